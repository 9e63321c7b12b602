#include "JetFile.h"

#include "Contained.h"
#include "JetReader.h"
#include "platform/runtime/RuntimeError.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <sys/stat.h>
#include <unistd.h>

namespace qor {

static QDataStream& operator<<(QDataStream& stream, const JetColumn& column)
{
    return stream << column.name << column.isNumber;
}

static QDataStream& operator>>(QDataStream& stream, JetColumn& column)
{
    return stream >> column.name >> column.isNumber;
}

static QDataStream& operator<<(QDataStream& stream, const JetTable& table)
{
    return stream << table.name << table.columns << table.otherColumns << table.ownRowCount << table.rows;
}

static QDataStream& operator>>(QDataStream& stream, JetTable& table)
{
    return stream >> table.name >> table.columns >> table.otherColumns >> table.ownRowCount >> table.rows;
}

namespace {

constexpr qint64 pageSize = 4096;
constexpr qint64 mebibyte = 1'048'576;
constexpr qint64 largestFile = 2048 * mebibyte; ///< of the format

/// A format by its first bytes, and why such a file is not taken; the last row is for all others.
struct Format
{
    QByteArray start;
    const char* refusal; ///< null for the one format that is taken
};

const std::array<Format, 6>& Formats()
{
    static const std::array<Format, 6> formats{
        Format{QByteArray("\0\1\0\0Standard Jet DB\0\1", 21), nullptr},
        Format{QByteArray("\0\1\0\0Standard Jet DB\0\0", 21),
               "it is a Jet 3 database; have its own program convert it to Jet 4 first"},
        Format{QByteArray("\0\1\0\0Standard Jet DB", 19), "it is a Jet database of an unknown version"},
        Format{QByteArray("\0\1\0\0Standard ACE DB", 19),
               "it is newer than Jet 4; have its own program save it in the Jet 4 format first"},
        Format{QByteArray("SQLite format 3\0", 16), "it is a SQLite database, not a Jet database"},
        Format{QByteArray(), "it is not a Jet database"},
    };
    return formats;
}

[[noreturn]] void ThrowNotImported(ErrorNumber number, const QString& fileName, const QString& why)
{
    throw RuntimeError(number, u"The file %1 cannot be imported: %2."_s.arg(fileName, why));
}

void RequireJetFile(const QString& fileName)
{
    const QFileInfo info(fileName);
    if (!info.exists())
        ThrowNotImported(ErrorNumber::FileAccess, fileName, u"it does not exist or cannot be reached"_s);
    if (!info.isFile())
        ThrowNotImported(ErrorNumber::FileAccess, fileName, u"it is not a file"_s);
    if (info.size() == 0)
        ThrowNotImported(ErrorNumber::InvalidFileFormat, fileName, u"it is empty"_s);
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        ThrowNotImported(ErrorNumber::FileAccess, fileName, file.errorString());
    const QByteArray start = file.read(32);
    const auto* const format =
        std::ranges::find_if(Formats(), [&](const Format& candidate) { return start.startsWith(candidate.start); });
    if (format->refusal != nullptr)
        ThrowNotImported(ErrorNumber::InvalidFileFormat, fileName, QString::fromLatin1(format->refusal));
    if (info.size() % pageSize != 0 || info.size() > largestFile)
        ThrowNotImported(ErrorNumber::InvalidFileFormat, fileName,
                         u"it is cut off or damaged; its length is not that of a Jet database"_s);
}

/// A file for temporary data that has no name, so that whatever ends the program leaves nothing of it behind. Below
/// zero when there is none.
int OpenUnnamed()
{
    constexpr int flags = O_RDWR | O_CLOEXEC;
    const int descriptor = open(QFile::encodeName(QDir::tempPath()), O_TMPFILE | flags, S_IRUSR | S_IWUSR);
    if (descriptor >= 0)
        return descriptor;
    QByteArray name =
        QFile::encodeName(QDir::temp().filePath(u"dir-db-XXXXXX"_s)); // for file systems on which all files need one
    const int named = mkostemp(name.data(), flags);
    if (named >= 0)
        unlink(name);
    return named;
}

[[noreturn]] void ThrowNotCopied(const QString& fileName, const QString& why)
{
    ThrowNotImported(ErrorNumber::DeviceIO, fileName,
                     u"it cannot be copied into the folder %1; %2"_s.arg(QDir::tempPath(), why));
}

void OpenPrivateCopy(const QString& fileName, QFile& copy)
{
    constexpr auto mode = QIODevice::ReadWrite | QIODevice::Unbuffered;
    QFile source(fileName);
    const int descriptor = OpenUnnamed();
    if (descriptor < 0 || !copy.open(descriptor, mode, QFileDevice::AutoCloseHandle))
        ThrowNotCopied(fileName, qt_error_string(errno));
    if (!source.open(QIODevice::ReadOnly))
        ThrowNotCopied(fileName, source.errorString());
    for (QByteArray block = source.read(mebibyte); !block.isEmpty(); block = source.read(mebibyte)) {
        if (copy.write(block) != block.size())
            ThrowNotCopied(fileName, copy.errorString());
    }
    if (source.error() != QFileDevice::NoError)
        ThrowNotCopied(fileName, source.errorString());
}

QByteArray Packed(const JetDatabase& database, const QString& fault)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << fault << database.tables << database.otherTables;
    return bytes;
}

QByteArray ReadAndPack(int descriptor, const QList<JetWish>& wishes)
{
    try {
        return Packed(ReadJetTables(descriptor, wishes), {});
    } catch (const RuntimeError& error) {
        return Packed({}, error.Description());
    }
}

/// Whether the reader, which a damaged file may have misled, returned all tables with whole rows.
bool IsWhole(const QDataStream& stream, const JetDatabase& database, const QList<JetWish>& wishes)
{
    const auto hasWholeRows = [](const JetTable& table) {
        return std::ranges::all_of(table.rows,
                                   [&](const QStringList& row) { return row.size() == table.columns.size(); });
    };
    return stream.status() == QDataStream::Ok && database.tables.size() == wishes.size() &&
           std::ranges::all_of(database.tables, hasWholeRows);
}

/// Why the reading cannot be trusted, or nothing.
QString ContainedFault(const ContainedResult& result)
{
    switch (result.ending) {
    case Ending::Done:
        break;
    case Ending::TookTooLong:
        return u"it is damaged; reading it comes to no end"_s;
    case Ending::Failed:
        return u"it is damaged or too large; its reader failed"_s;
    }
    // After a message the library goes on with whatever it made of the fault.
    const QString message = QString::fromLocal8Bit(result.messages).section(u'\n', 0, 0).trimmed();
    return message.isEmpty() ? QString() : u"it is damaged (%1)"_s.arg(message.left(200));
}

} // namespace

JetDatabase ReadJetFile(const QString& fileName, const QList<JetWish>& wishes)
{
    RequireJetFile(fileName);
    QFile copy;
    OpenPrivateCopy(fileName, copy);
    const ContainedLimits limits{.processorSeconds = static_cast<int>(10 + copy.size() / (4 * mebibyte)),
                                 .bytes = 512 * mebibyte};
    const ContainedResult result = RunContained([&] { return ReadAndPack(copy.handle(), wishes); }, limits);
    QString fault = ContainedFault(result);
    JetDatabase database;
    if (fault.isEmpty()) {
        QDataStream stream(result.output);
        stream >> fault >> database.tables >> database.otherTables;
        if (fault.isEmpty() && !IsWhole(stream, database, wishes))
            fault = u"it is damaged; its reader failed"_s;
    }
    if (!fault.isEmpty())
        ThrowNotImported(ErrorNumber::InvalidFileFormat, fileName, fault);
    return database;
}

} // namespace qor
