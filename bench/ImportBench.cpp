// How long importing a full directory takes in a partition with the most message numbers and many message nodes, until
// its rows are painted: against its three parts done by hand, which are reading the file, reading the numbers in use
// and filling the list. The sides take turns; printed are their medians. With --once each runs once, which proves no
// more than that it runs.
#include "Bench.h"
#include "editor/BusinessRules.h"
#include "editor/DirectoryListEvents.h"
#include "editor/EntryCommands.h"
#include "editor/History.h"
#include "interchange/DirectoryImport.h"
#include "interchange/SelectFilename.h"
#include "rules/DelimitedReader.h"
#include "support/BareForm.h"

#include <cstdio>
#include <QApplication>
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
constexpr double highestRatio = 3;

void AddPartition(const SampleDatabase& database)
{
    database.Run(u"INSERT INTO Node_Type_Max VALUES (1, %1, 0, 32767)"_s.arg(partition));
    database.Run(u"INSERT INTO Node_MSG (ConfigID, PartID, NodeTypeID, NodeNumber) WITH RECURSIVE n(i) AS (SELECT 1 "
                 "UNION ALL SELECT i + 1 FROM n WHERE i < %2) SELECT 1, %1, 0, i FROM n"_s.arg(partition)
                     .arg(messageNodeCount));
}

void WriteEntries(const QString& fileName)
{
    QFile file(fileName);
    file.open(QIODevice::WriteOnly);
    for (int i = 0; i < entryCount; ++i)
        file.write("\"Lastname\",\"Firstname\",\"" + QByteArray::number(1000 + i) + "\"\r\n");
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

void Import(EditorForm& form)
{
    BusinessRules rules;
    History history(form);
    DirectoryListEvents events(form, history);
    EntryCommands commands(form, rules, events, history);
    DirectoryImport(form, rules, commands, history).cmdOpenCSVFilename_Click();
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
double TimeToFill(void (*fill)(EditorForm&), EditorForm& form)
{
    form.LVDirectory->Items().Clear();
    QCoreApplication::processEvents();
    const double time = TimeOf([&] {
        fill(form);
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
    WriteEntries(chosenFile);
    const auto form = ShownForm();

    std::vector<double> imports;
    std::vector<double> parts;
    std::vector<double> ratios; // within a round, whose runs met the same load of the machine
    for (int round = rounds > 1 ? -1 : 0; round < rounds; ++round) { // the round before the first warms up
        const double import = TimeToFill(Import, *form);
        const double byHand = TimeToFill(DoTheParts, *form);
        if (round < 0)
            continue;
        imports.push_back(import);
        parts.push_back(byHand);
        ratios.push_back(import / byHand);
    }
    std::printf("importing %d entries: %.2f ms against %.2f ms for its parts, ratio %.2f (wanted: at most %.1f)\n",
                entryCount, Median(imports), Median(parts), Median(ratios), highestRatio);
    return 0;
}
