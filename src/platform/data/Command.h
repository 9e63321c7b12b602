// A statement with parameters that runs on a connection, which it opens on first use. It is prepared once.
#pragma once

#include "platform/data/Recordset.h"

#include <functional>
#include <memory>
#include <QStringList>

namespace qor {

class Connection;
class Statement;

/// What a null QString among the values of a command stands for.
enum class NullText { IsEmpty, IsNull };

class Command
{
public:
    /// engineText: the statement in the engine's words, its parameters as ?1, ?2, ... in this order, each once
    Command(Connection& connection, QString name, QString engineText, int parameterCount,
            NullText nullText = NullText::IsEmpty);
    ~Command();
    Command(Command&&) noexcept;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    /// Runs with these values, bound by position. They are texts, whatever the columns: the form holds texts, and a
    /// file keeps one that is no number in a number column as it is, where converting it here could only lose it or end
    /// a save half way.
    /// Every row is read before it returns. Raises RuntimeError: a wrong number of values, a recordset of this command
    /// that is still open, an error of the engine or of its file.
    Recordset Open(const QStringList& values);
    /// Runs with these values and passes row by row to `take`, for a result that is too large to hold. The recordset
    /// stands on that one row and is used again for the next. Raises RuntimeError as Open does.
    void ForEachRow(const QStringList& values, const std::function<void(const Recordset& row)>& take);
    /// Runs a statement without rows; returns how many rows it changed.
    int Execute(const QStringList& values);

private:
    void Run(const QStringList& values);
    /// Runs it, and once more if the engine says that this may help.
    void RunToRead(const QStringList& values);
    void RequireValues(const QStringList& values) const;

    Connection& mConnection;
    QString mName;
    QString mEngineText;
    int mParameterCount;
    NullText mNullText;
    std::unique_ptr<Statement> mStatement;
    std::weak_ptr<const RecordRows> mOpenRows;
};

} // namespace qor
