#include "platform/shell/SafeFile.h"

#include <QSaveFile>

namespace qor {

bool CommitFile(QSaveFile& file)
{
    if (file.flush())
        return file.commit();
    file.cancelWriting();
    return false;
}

} // namespace qor
