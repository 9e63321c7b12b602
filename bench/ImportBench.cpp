// How long importing a full directory takes in a partition with the most message numbers and many message nodes, until
// its rows are painted: against its three parts done by hand, which are reading the file, reading the numbers in use
// and filling the list. And how long pasting the same entries takes, against importing them. The sides take turns;
// printed are their medians. With --once each runs once, which proves no more than that it runs.
#include "Bench.h"
#include "editor/BusinessRules.h"
#include "editor/DirectoryListEvents.h"
#include "editor/EntryCommands.h"
#include "editor/History.h"
#include "interchange/DirectoryClipboard.h"
#include "interchange/DirectoryImport.h"
#include "interchange/SelectFilename.h"
#include "rules/DelimitedReader.h"
#include "rules/EntryList.h"
#include "rules/TabularText.h"
#include "support/BareForm.h"

#include <cstdio>
#include <QApplication>
#include <QClipboard>
#include <QFile>

namespace {

QString chosenFile;

} // namespace

namespace qor {

/// This program's own answer stands before the file dialog.
bool SelectOpenFilename(const EditorForm& /*form*/, QString& fileName)
{
    fileName = chosenFile;
    return true;
}

} // namespace qor

using namespace qor;

namespace {

constexpr int entryCount = 500;
constexpr int messageNodeCount = 30000;
constexpr qint16 partition = 9; ///< of the bench's own
constexpr double highestImportRatio = 3;
constexpr double highestPasteRatio = 1.5;

void AddPartition(const SampleDatabase& database)
{
    database.Run(u"INSERT INTO Node_Type_Max VALUES (1, %1, 0, 32767)"_s.arg(partition));
    database.Run(u"INSERT INTO Node_MSG (ConfigID, PartID, NodeTypeID, NodeNumber) WITH RECURSIVE n(i) AS (SELECT 1 "
                 "UNION ALL SELECT i + 1 FROM n WHERE i < %2) SELECT 1, %1, 0, i FROM n"_s.arg(partition)
                     .arg(messageNodeCount));
}

/// Into the file and the clipboard.
void WriteEntries()
{
    std::vector<DirectoryEntry> entries;
    entries.reserve(entryCount);
    for (int i = 0; i < entryCount; ++i)
        entries.push_back({u"Lastname"_s, u"Firstname"_s, QString::number(1000 + i), {}, {}});
    QGuiApplication::clipboard()->setText(TabularText(entries));
    QFile file(chosenFile);
    file.open(QIODevice::WriteOnly);
    file.write(WriteEntryList(entries).text);
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

    std::vector<double> imports;
    std::vector<double> parts;
    std::vector<double> pastes;
    std::vector<double> importRatios; // within a round, whose runs met the same load of the machine
    std::vector<double> pasteRatios;
    for (int round = rounds > 1 ? -1 : 0; round < rounds; ++round) { // the round before the first warms up
        const double import = TimeToFill(*form, [&] { handlers.import.cmdOpenCSVFilename_Click(); });
        const double byHand = TimeToFill(*form, [&] { DoTheParts(*form); });
        const double paste = TimeToFill(*form, [&] { handlers.clipboard.Paste(); });
        if (round < 0)
            continue;
        imports.push_back(import);
        parts.push_back(byHand);
        pastes.push_back(paste);
        importRatios.push_back(import / byHand);
        pasteRatios.push_back(paste / import);
    }
    std::printf("importing %d entries: %.2f ms against %.2f ms for its parts, ratio %.2f (wanted: at most %.1f)\n",
                entryCount, Median(imports), Median(parts), Median(importRatios), highestImportRatio);
    std::printf("pasting %d entries: %.2f ms against %.2f ms for importing them, ratio %.2f (wanted: at most %.1f)\n",
                entryCount, Median(pastes), Median(imports), Median(pasteRatios), highestPasteRatio);
    return 0;
}
