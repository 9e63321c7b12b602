#include "Sample.h"

#include "RowWriter.h"
#include "SampleEntries.h"
#include "store/CommandCatalog.h"

#include <array>

namespace qor {

namespace {

struct PartitionKey
{
    int config;
    int partition;
};

struct SampleMaximum
{
    PartitionKey key;
    QString nodeType;
    int maximum;
};

/// Message nodes from `first` to `last`; the numbers between two ranges do not exist.
struct SampleMessages
{
    PartitionKey key;
    int first;
    int last;
};

enum class Entries { Ordinary, Odd };

struct SampleDirectory
{
    PartitionKey key;
    int number;
    QStringView description; ///< a null text stands for Null, here and below
    QStringView usePasswords;
    QStringView accessCode;
    QStringView startingPrompt;
    Entries entries;
    int entryCount;
    int lastPrompt; ///< of the entries' prompts
};

constexpr PartitionKey mainPartition{1, 1};
constexpr PartitionKey withoutMaximum{1, 2};
constexpr PartitionKey secondConfig{2, 1};

const std::array maxima{
    SampleMaximum{mainPartition, NODE_TYPE_MSG, 250},  SampleMaximum{mainPartition, NODE_TYPE_DIR, 100},
    SampleMaximum{withoutMaximum, NODE_TYPE_DIR, 100}, SampleMaximum{secondConfig, NODE_TYPE_MSG, 40},
    SampleMaximum{secondConfig, NODE_TYPE_DIR, 20},
};

constexpr std::array messageRanges{
    SampleMessages{mainPartition, 0, 12},  SampleMessages{mainPartition, 14, 26}, SampleMessages{mainPartition, 28, 40},
    SampleMessages{mainPartition, 43, 49}, SampleMessages{mainPartition, 51, 54}, SampleMessages{mainPartition, 56, 60},
    SampleMessages{withoutMaximum, 0, 6},  SampleMessages{secondConfig, 0, 10},
};

constexpr QStringView absent;

const std::array directories{
    SampleDirectory{mainPartition, 0, u"New directory", u"0", u"", u"1", Entries::Ordinary, 0, 1},
    SampleDirectory{mainPartition, 7, u"Staff", u"1", u"4711", u"5", Entries::Ordinary, 40, 40},
    SampleDirectory{mainPartition, 12, u"All extensions", u"0", u"", u"1", Entries::Ordinary, 500, 250},
    SampleDirectory{mainPartition, 20, u"Visitors", u"0", u"20202020", u"250", Entries::Ordinary, 0, 1},
    SampleDirectory{mainPartition, 31, absent, absent, absent, u"251", Entries::Odd, OddEntryCount(), 1},
    SampleDirectory{withoutMaximum, 5, u"Workshop", u"0", u"", absent, Entries::Ordinary, 6, 6},
    SampleDirectory{secondConfig, 3, u"Front office", u"1", u"1234", u"2", Entries::Ordinary, 8, 9},
};

const QString dateModified = u"4/17/2009 9:30:00 AM"_s;

QStringList KeyTexts(PartitionKey key)
{
    return {QString::number(key.config), QString::number(key.partition)};
}

class SampleWriter
{
public:
    explicit SampleWriter(Connection& connection)
        : mNodeTypeMax(connection, TableId::Node_Type_Max),
          mNodeDir(connection, TableId::Node_DIR),
          mDetailDir(connection, TableId::Detail_DIR),
          mNodeMsg(connection, TableId::Node_MSG),
          mNodeGeneralPool(connection, TableId::Node_General_Pool)
    {
    }

    void WriteMaximum(const SampleMaximum& maximum);
    void WriteMessage(PartitionKey key, int number);
    void WriteDirectory(const SampleDirectory& directory);

private:
    void WriteEntry(const SampleDirectory& directory, int position);

    RowWriter mNodeTypeMax;
    RowWriter mNodeDir;
    RowWriter mDetailDir;
    RowWriter mNodeMsg;
    RowWriter mNodeGeneralPool;
};

void SampleWriter::WriteMaximum(const SampleMaximum& maximum)
{
    mNodeTypeMax.Write(KeyTexts(maximum.key) << maximum.nodeType << QString::number(maximum.maximum));
}

void SampleWriter::WriteMessage(PartitionKey key, int number)
{
    const QString numberText = QString::number(number);
    const QString description = number == 0 ? u"Template"_s : u"Message "_s + numberText;
    const QString waveFile = u"P%1M%2.wav"_s.arg(key.partition, 2, 10, QChar(u'0')).arg(number, 3, 10, QChar(u'0'));
    // MaxLength, OnOff, DTMF, Password, Directory, KELFilename, Comment, SkipCount, Permission, WarningTone,
    // LineAssignment, NodeType, NodeDescription, MSGArchive
    mNodeMsg.Write(KeyTexts(key) << NODE_TYPE_MSG << numberText << u"180"_s << u"1"_s << u"0123456789*#"_s << u""_s
                                 << u"Prompts"_s << waveFile << u"Sample"_s << u"0"_s << u"1"_s << u"1"_s << u"All"_s
                                 << u"MSG"_s << description << u"0"_s);
    mNodeGeneralPool.Write(KeyTexts(key) << NODE_TYPE_MSG << numberText << u"MSG"_s << description << dateModified);
}

void SampleWriter::WriteDirectory(const SampleDirectory& directory)
{
    const QString number = QString::number(directory.number);
    const QString description = directory.description.toString();
    mNodeDir.Write(KeyTexts(directory.key)
                   << NODE_TYPE_DIR << number << description << directory.usePasswords.toString()
                   << directory.accessCode.toString() << directory.startingPrompt.toString());
    mNodeGeneralPool.Write(KeyTexts(directory.key)
                           << NODE_TYPE_DIR << number << u"DIR"_s << description << dateModified);
    for (int position = 0; position < directory.entryCount; ++position)
        WriteEntry(directory, position);
}

void SampleWriter::WriteEntry(const SampleDirectory& directory, int position)
{
    const SampleEntry entry =
        directory.entries == Entries::Odd ? OddEntry(position) : OrdinaryEntry(position, directory.lastPrompt);
    mDetailDir.Write(KeyTexts(directory.key)
                     << QString::number(directory.number) << QString::number(position + 1) << entry.lastName
                     << entry.firstName << entry.extension << entry.namePrompt << entry.password);
}

} // namespace

void WriteSample(Connection& connection)
{
    SampleWriter writer(connection);
    for (const SampleMaximum& maximum : maxima)
        writer.WriteMaximum(maximum);
    for (const SampleMessages& range : messageRanges) {
        for (int number = range.first; number <= range.last; ++number)
            writer.WriteMessage(range.key, number);
    }
    for (const SampleDirectory& directory : directories)
        writer.WriteDirectory(directory);
}

} // namespace qor
