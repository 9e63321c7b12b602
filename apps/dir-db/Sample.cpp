#include "Sample.h"

#include "RowWriter.h"
#include "rules/CommandValues.h"
#include "rules/EntryColumns.h"
#include "rules/MessageNodes.h"
#include "SampleEntries.h"

#include <array>

namespace qor {

namespace {

struct SampleMaximum
{
    Partition partition;
    QString nodeType;
    int maximum;
};

/// Message nodes from `first` to `last`; the numbers between two ranges do not exist.
struct SampleMessages
{
    Partition partition;
    int first;
    int last;
};

enum class Entries { Ordinary, Odd };

struct SampleDirectory
{
    Partition partition;
    int number;
    QStringView description; ///< a null text stands for Null, here and below
    QStringView usePasswords;
    QStringView accessCode;
    QStringView startingPrompt;
    Entries entries;
    int entryCount;
    int lastPrompt; ///< of the entries' prompts
};

constexpr Partition mainPartition{1, 1};
constexpr Partition withoutMaximum{1, 2};
constexpr Partition secondConfig{2, 1};

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
    void WriteMessage(const Partition& partition, int number);
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
    mNodeTypeMax.Write(ValuesOf(maximum.partition) << maximum.nodeType << QString::number(maximum.maximum));
}

void SampleWriter::WriteMessage(const Partition& partition, int number)
{
    const QString numberText = QString::number(number);
    const QString description = number == 0 ? u"Template"_s : u"Message "_s + numberText;
    // MaxLength, OnOff, DTMF, Password, Directory, KELFilename, Comment, SkipCount, Permission, WarningTone,
    // LineAssignment, NodeType, NodeDescription, MSGArchive
    mNodeMsg.Write(ValuesOf(partition) << NODE_TYPE_MSG << numberText << u"180"_s << u"1"_s << u"0123456789*#"_s
                                       << u""_s << u"Prompts"_s << WaveFileName(partition.number, numberText)
                                       << u"Sample"_s << u"0"_s << u"1"_s << u"1"_s << u"All"_s << u"MSG"_s
                                       << description << u"0"_s);
    mNodeGeneralPool.Write(ValuesOf(partition)
                           << NODE_TYPE_MSG << numberText << u"MSG"_s << description << dateModified);
}

void SampleWriter::WriteDirectory(const SampleDirectory& directory)
{
    const QString number = QString::number(directory.number);
    const QString description = directory.description.toString();
    mNodeDir.Write(ValuesOf(directory.partition)
                   << NODE_TYPE_DIR << number << description << directory.usePasswords.toString()
                   << directory.accessCode.toString() << directory.startingPrompt.toString());
    mNodeGeneralPool.Write(ValuesOf(directory.partition)
                           << NODE_TYPE_DIR << number << u"DIR"_s << description << dateModified);
    for (int position = 0; position < directory.entryCount; ++position)
        WriteEntry(directory, position);
}

void SampleWriter::WriteEntry(const SampleDirectory& directory, int position)
{
    const DirectoryEntry entry =
        directory.entries == Entries::Odd ? OddEntry(position) : OrdinaryEntry(position, directory.lastPrompt);
    QStringList values = ValuesOf(directory.partition)
                         << QString::number(directory.number) << QString::number(position + 1);
    for (const EntryColumn& column : entryColumns)
        values << entry.*column.field;
    mDetailDir.Write(values);
}

} // namespace

void WriteSample(DataBase& dataBase)
{
    SampleWriter writer(dataBase.Conn);
    for (const SampleMaximum& maximum : maxima)
        writer.WriteMaximum(maximum);
    for (const SampleMessages& range : messageRanges) {
        for (int number = range.first; number <= range.last; ++number)
            writer.WriteMessage(range.partition, number);
    }
    for (const SampleDirectory& directory : directories)
        writer.WriteDirectory(directory);
}

} // namespace qor
