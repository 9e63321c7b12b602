#include "RecordingFiles.h"

#include "platform/runtime/RuntimeError.h"

#include <filesystem>
#include <QFile>

namespace qor {

namespace {

QString NameIn(const QString& path)
{
    const qsizetype separator = std::max(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\'));
    return path.sliced(separator + 1).toCaseFolded();
}

} // namespace

RecordingFiles::RecordingFiles(const QString& folder)
{
    std::error_code error;
    std::filesystem::directory_iterator entry(QFile::encodeName(folder).toStdString(), error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        std::error_code unknown; // a link that leads nowhere is no file
        if (entry->is_regular_file(unknown))
            mNames.insert(NameIn(QFile::decodeName(entry->path().c_str())));
    }
    if (error)
        throw RuntimeError(ErrorNumber::FileAccess, u"The folder %1 cannot be read: %2."_s.arg(
                                                        folder, QString::fromLocal8Bit(error.message().c_str())));
}

bool RecordingFiles::Contains(const QString& recording) const
{
    return mNames.contains(NameIn(recording));
}

} // namespace qor
