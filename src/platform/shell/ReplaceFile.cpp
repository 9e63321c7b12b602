#include "platform/shell/ReplaceFile.h"

#include "platform/runtime/RuntimeError.h"

#include <QSaveFile>

namespace qor {

namespace {

/// Flushes first: the commit takes no notice of a failure in the last block.
bool WriteAll(QSaveFile& file, const QByteArray& contents)
{
    return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size() && file.flush() && file.commit();
}

} // namespace

void ReplaceFile(const QString& fileName, const QByteArray& contents)
{
    QSaveFile file(fileName);
    if (!WriteAll(file, contents)) {
        throw RuntimeError(
            ErrorNumber::FileAccess,
            u"%1 cannot be written: %2. Choose another folder or free some space."_s.arg(fileName, file.errorString()));
    }
}

} // namespace qor
