#include "platform/data/DatabaseFile.h"
#include "platform/data/Engine.h"

#include <array>

namespace qor {

namespace {

struct EngineSentence
{
    int code; ///< the engine's primary result code
    const char* sentence;
};

constexpr std::array engineSentences{
    EngineSentence{5, "is locked by another program. Wait until that program has finished and try again."},
    EngineSentence{6, "has a table that another program has locked. Wait until it has finished and try again."},
    EngineSentence{8, "cannot be written. Check the permissions of the file and of its folder."},
    EngineSentence{10, "cannot be read or written (disk error). Check the disk."},
    EngineSentence{11, "is damaged. Restore it from a backup."},
    EngineSentence{13, "cannot grow: the disk is full. Free some space and try again."},
    EngineSentence{14, "cannot be opened. Check that it exists and that you may read and write it and its folder."},
};

constexpr int notADatabase = 26;

QString SentenceFor(int code, const QString& fileName)
{
    if (code == notADatabase)
        return ForeignFileSentence(fileName);
    for (const EngineSentence& entry : engineSentences) {
        if (entry.code == code)
            return QString::fromLatin1(entry.sentence);
    }
    return {};
}

} // namespace

RuntimeError ProviderError(const QSqlError& error, const QString& fileName)
{
    const QString engineText = error.databaseText().isEmpty() ? error.driverText() : error.databaseText();
    const int code = error.nativeErrorCode().toInt() & 0xFF;
    QString sentence = SentenceFor(code, fileName);
    if (sentence.isEmpty() && engineText.contains(u"no such"))
        sentence = u"lacks a table or column. Run \"dir-db check\" on the file."_s;
    if (sentence.isEmpty())
        sentence = u"gave an error."_s;
    return {ErrorNumber::Provider, u"The database %1 %2 (%3)"_s.arg(fileName, sentence, engineText)};
}

} // namespace qor
