// The one exception of the component: number, source and description of a run-time error.
#pragma once

#include "platform/runtime/Text.h"

#include <exception>

namespace qor {

/// Numbers of the run-time errors that the component raises itself.
enum class ErrorNumber : int {
    Overflow = 6,
    OutOfMemory = 7,
    SubscriptOutOfRange = 9,
    TypeMismatch = 13,
    InternalError = 51,
    DeviceIO = 57, ///< a file that cannot be read to its end
    InputPastEnd = 62,
    FileAccess = 75, ///< a file that cannot be opened or written
    ObjectNotSet = 91,
    InvalidFileFormat = 321,
    KeyNotUnique = 457,
    CannotCreateObject = 429,
    UnsupportedValueType = 1001,
    Provider = 3000,       ///< the database engine or its file
    DatabaseLocked = 3006, ///< the wait for another program ran out; a later try may succeed
    ConnectionLost = 3151, ///< to a database server; what it holds now is not known
};

class RuntimeError : public std::exception
{
public:
    /// description: a sentence that tells the user what is wrong and, where possible, what to do.
    RuntimeError(ErrorNumber number, QString description, QString source = u"QOR_DIR_NODE"_s);

    ErrorNumber Number() const { return mNumber; }
    const QString& Source() const { return mSource; }
    const QString& Description() const { return mDescription; }
    const char* what() const noexcept override { return mWhat.constData(); }

private:
    ErrorNumber mNumber;
    QString mSource;
    QString mDescription;
    QByteArray mWhat;
};

} // namespace qor
