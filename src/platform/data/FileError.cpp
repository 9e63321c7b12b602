#include "platform/data/FileEngine.h"

#include <algorithm>
#include <array>
#include <QFile>
#include <sys/statvfs.h>

namespace qor {

namespace {

constexpr char diskFullSentence[] = "cannot grow: the disk is full. Free some space and try again.";

struct EngineSentence
{
    int code; ///< a primary or extended result code; extended ones stand before their primary one
    const char* sentence;
};

constexpr std::array engineSentences{
    EngineSentence{5, "is locked by another program. Wait until that program has finished and try again."},
    EngineSentence{6, "has a table that another program has locked. Wait until it has finished and try again."},
    EngineSentence{7, "needs more memory than there is. Close other programs and try again."},
    EngineSentence{
        1032, "was moved, removed or replaced while it was open. Put it back, or try again to use what is there now."},
    EngineSentence{8, "cannot be written. Check the permissions of the file and of its folder."},
    EngineSentence{4874, "cannot be used: the disk is full or fails. Free some space, check the disk and try again."},
    EngineSentence{10, "cannot be read or written (disk error). Check the disk."},
    EngineSentence{11,
                   "is damaged or cannot be read from its disk. Check the disk and restore the file from a backup."},
    EngineSentence{13, diskFullSentence},
    EngineSentence{14, "cannot be opened. Check that it exists and that you may read and write it and its folder."},
    EngineSentence{15, "cannot be locked. Keep it on a local disk, close other programs that use it and try again."},
    EngineSentence{19, "refuses a row that contradicts what it holds. Another program may have saved the same: try "
                       "again, or run \"dir-db check\" on the file."},
};

/// Failures without a code of their own, by what the engine says.
struct TextSentence
{
    QLatin1String text;
    const char* sentence;
};

constexpr std::array textSentences{
    TextSentence{QLatin1String("no such"), "lacks a table or column. Run \"dir-db check\" on the file."},
    TextSentence{QLatin1String("unsupported file format"), newerFormatSentence},
};

constexpr int notADatabase = 26;

/// Whether there is too little room for the smallest thing that the engine makes, the index of the log. Some failures
/// for lack of room come with the code of a faulty disk, or of a file that cannot be opened.
bool IsDiskFull(const QString& fileName)
{
    constexpr unsigned long room = 64UL * 1024;
    struct statvfs status;
    if (statvfs(QFile::encodeName(fileName).constData(), &status) != 0)
        return false;
    return status.f_bavail * status.f_frsize < room || (status.f_files > 0 && status.f_favail == 0);
}

QString SentenceFor(int code, const QString& engineText, const QString& fileName)
{
    const int primary = code & 0xFF;
    if (primary == notADatabase)
        return ForeignFileSentence(fileName);
    if ((primary == 10 || primary == 14) && IsDiskFull(fileName))
        return QString::fromLatin1(diskFullSentence);
    for (const EngineSentence& entry : engineSentences) {
        if (entry.code == code || entry.code == primary)
            return QString::fromLatin1(entry.sentence);
    }
    for (const TextSentence& entry : textSentences) {
        if (engineText.contains(entry.text))
            return QString::fromLatin1(entry.sentence);
    }
    return u"gave an error."_s;
}

} // namespace

int PrimaryCode(const QSqlError& error)
{
    return error.nativeErrorCode().toInt() & 0xFF;
}

bool IsLockCode(int primaryCode)
{
    return primaryCode == 5 || primaryCode == 6;
}

RuntimeError FileError(const QSqlError& error, const QString& fileName)
{
    const QString engineText = error.databaseText().isEmpty() ? error.driverText() : error.databaseText();
    const QString sentence = SentenceFor(error.nativeErrorCode().toInt(), engineText, fileName);
    return {IsLockCode(PrimaryCode(error)) ? ErrorNumber::DatabaseLocked : ErrorNumber::Provider,
            u"The database %1 %2 (%3)"_s.arg(fileName, sentence, engineText)};
}

RuntimeError NewerFormatError(const QString& fileName)
{
    return {ErrorNumber::Provider, u"The database %1 %2"_s.arg(fileName, QString::fromLatin1(newerFormatSentence))};
}

} // namespace qor
