// How long importing a full directory takes in a partition with the most message numbers and many message nodes, until
// its rows are painted: against its three parts done by hand, which are reading the file, reading the numbers in use
// and filling the list. How long pasting the same entries takes, against importing them; recognising and reading a
// table of them, against reading them by the plain rule; and taking them from the file into the database without a
// window, in this process, against importing and saving them in the editor. The sides take turns; printed are their
// medians. With --once each runs once, which proves no more than that it runs.
#include "Bench.h"
#include "editor/BusinessRules.h"
#include "editor/DirectoryListEvents.h"
#include "editor/EntryCommands.h"
#include "editor/History.h"
#include "interchange/DirectoryClipboard.h"
#include "interchange/DirectoryImport.h"
#include "interchange/SelectFilename.h"
#include "ListImport.h"
#include "rules/DelimitedReader.h"
#include "rules/EntryList.h"
#include "rules/TabularText.h"
#include "support/BareForm.h"

#include <cstdio>
#include <fcntl.h>
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <unistd.h>

namespace {

QString chosenFile;

} // namespace

namespace qor {

/// Takes the place of the file dialog.
std::optional<QString> SelectOpenFilename(const EditorForm& /*form*/)
{
    return chosenFile;
}

} // namespace qor

using namespace qor;

namespace {

constexpr int entryCount = 500;
constexpr int messageNodeCount = 30000;
constexpr qint16 partition = 9; ///< of the bench's own
constexpr double highestImportRatio = 3;
constexpr double highestPasteRatio = 1.5;
constexpr double highestTableRatio = 2;
constexpr double highestToolRatio = 1.5;
constexpr qint16 nodeNumber = 1;

void AddPartition(const SampleDatabase& database)
{
    database.Run(u"INSERT INTO Node_Type_Max VALUES (1, %1, 0, 32767)"_s.arg(partition));
    database.Run(u"INSERT INTO Node_MSG (ConfigID, PartID, NodeTypeID, NodeNumber) WITH RECURSIVE n(i) AS (SELECT 1 "
                 "UNION ALL SELECT i + 1 FROM n WHERE i < %2) SELECT 1, %1, 0, i FROM n"_s.arg(partition)
                     .arg(messageNodeCount));
    database.Run(u"INSERT INTO Node_DIR VALUES (1, %1, 16, %2, 'Bench', 0, '', 1)"_s.arg(partition).arg(nodeNumber));
    // The message nodes that the entries will name are in the pool, so that a save asks nothing.
    database.Run(
        u"INSERT INTO Node_General_Pool WITH RECURSIVE n(i) AS (SELECT %2 + 1 UNION ALL SELECT i + 1 FROM n WHERE "
        "i < %2 + %3) SELECT 1, %1, 0, i, 'MSG', '', '' FROM n"_s.arg(partition)
            .arg(messageNodeCount)
            .arg(entryCount));
}

QString TableFile()
{
    return chosenFile + u".table"_s;
}

/// Into the files and the clipboard.
void WriteEntries()
{
    std::vector<DirectoryEntry> entries;
    entries.reserve(entryCount);
    for (int i = 0; i < entryCount; ++i)
        entries.push_back({u"Lastname"_s, u"Firstname"_s, QString::number(1000 + i), {}, {}});
    QGuiApplication::clipboard()->setText(TabularText(entries));
    QFile file(chosenFile);
    file.open(QIODevice::WriteOnly);
    const QByteArray plain = WriteEntryList(entries).text;
    file.write(plain);
    QFile table(TableFile()); // with a caption that is not known, so that the plain rule is tried
    table.open(QIODevice::WriteOnly);
    table.write("Surname;Given name;Extension;Desk\r\n" +
                QByteArray(plain).replace("\",\"", "\";\"").replace("\"\r", "\";\"\"\r"));
}

std::unique_ptr<EditorForm> ShownForm()
{
    auto form = std::make_unique<BareForm>();
    form->Load();
    form->SetConfigID(1);
    form->SetPartitionID(partition);
    ResetDirectoryListView(*form->LVDirectory);
    BusinessRules().LoadPromptMSGNodeNumber(*form);
    form->show();
    QCoreApplication::processEvents();
    return form;
}

struct Handlers
{
    explicit Handlers(EditorForm& form)
        : history(form),
          listEvents(form, history),
          commands(form, rules, listEvents, history),
          import(form, rules, commands, history),
          clipboard(form, rules, commands, history)
    {
    }

    BusinessRules rules;
    History history;
    DirectoryListEvents listEvents;
    EntryCommands commands;
    DirectoryImport import;
    DirectoryClipboard clipboard;
};

/// Of several readings, one of which is very short.
double TimeToRead(const QString& fileName, bool isTable)
{
    constexpr int readings = 10;
    int taken = 0;
    const double time = TimeOf([&] {
        for (int i = 0; i < readings; ++i) {
            QFile file(fileName);
            file.open(QIODevice::ReadOnly);
            const auto layout = isTable ? DetectTable(file) : std::nullopt;
            ReadEntryList(file, layout, 0, [&](const DirectoryEntry&) { ++taken; });
        }
    });
    if (taken != readings * entryCount)
        Fail(u"the list is not read as it should be"_s);
    return time / readings;
}

/// What the body prints goes nowhere.
template <typename Body>
void Silently(Body&& body)
{
    std::fflush(stdout);
    const int output = dup(STDOUT_FILENO);
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    body();
    std::fflush(stdout);
    dup2(output, STDOUT_FILENO);
    close(nowhere);
    close(output);
}

double TimeWithoutWindow(const SampleDatabase& database)
{
    const ListImportRequest request{.fileName = database.FileName(),
                                    .listName = chosenFile,
                                    .node = {{1, partition}, nodeNumber},
                                    .replaces = true};
    double time = 0;
    Silently([&] { time = TimeOf([&] { ImportList(request); }); });
    return time;
}

void DoTheParts(EditorForm& form)
{
    QFile file(chosenFile);
    file.open(QIODevice::ReadOnly);
    BusinessRules rules;
    const MessageNodeNumbers used = rules.ReadUsedNumbers(form).value();
    std::vector<ListRow> rows;
    for (DelimitedReader reader(file); !reader.AtEnd();) {
        const QString lastName = reader.ReadField();
        const QString firstName = reader.ReadField();
        const QString extension = reader.ReadField();
        const auto number = static_cast<int>(rows.size()) + 1;
        rows.push_back(
            EntryRow(number, {lastName, firstName, extension, QString::number(used.back() + number), u"1"_s}));
    }
    form.LVDirectory->Items().Append(std::move(rows));
}

/// In ms, from the opening of the file until the list is painted.
double TimeToFill(EditorForm& form, const std::function<void()>& fill)
{
    form.LVDirectory->Items().Clear();
    QCoreApplication::processEvents();
    const double time = TimeOf([&] {
        fill();
        QCoreApplication::processEvents();
    });
    const ListItems& items = form.LVDirectory->Items();
    const QString lastPrompt = QString::number(messageNodeCount + entryCount);
    if (items.RowCount() != entryCount || items.Text(entryCount - 1, 4) != lastPrompt)
        Fail(u"the list is not filled as it should be"_s);
    return time;
}

} // namespace

int main(int argc, char** argv)
{
    UseOffscreen();
    const QApplication application(argc, argv);
    const int rounds = Rounds(41);
    const SampleDatabase database;
    AddPartition(database);
    chosenFile = database.FileName() + u".csv"_s;
    WriteEntries();
    const auto form = ShownForm();
    Handlers handlers(*form);

    Comparison imports;
    Comparison pastes;
    Comparison tables;
    Comparison tools;
    for (int round = rounds > 1 ? -1 : 0; round < rounds; ++round) { // the round before the first warms up
        const double import = TimeToFill(*form, [&] { handlers.import.cmdOpenCSVFilename_Click(); });
        const double save = TimeOf([&] { handlers.rules.SaveChanges(*form, nodeNumber); });
        const double tool = TimeWithoutWindow(database);
        const double byHand = TimeToFill(*form, [&] { DoTheParts(*form); });
        const double paste = TimeToFill(*form, [&] { handlers.clipboard.Paste(); });
        const double table = TimeToRead(TableFile(), true);
        const double plain = TimeToRead(chosenFile, false);
        if (round < 0)
            continue;
        imports.Add(import, byHand);
        pastes.Add(paste, import);
        tables.Add(table, plain);
        tools.Add(tool, import + save);
    }
    imports.Report(u"importing 500 entries, to its parts"_s, highestImportRatio);
    pastes.Report(u"pasting 500 entries, to importing them"_s, highestPasteRatio);
    tables.Report(u"reading a table of 500 entries, to reading a plain list"_s, highestTableRatio);
    tools.Report(u"dir-db import of 500 entries, to importing and saving them"_s, highestToolRatio);
    return 0;
}
