// How long the editor's commands take on a full directory, and how that grows with ten times the rows: from the
// event until the form is painted again. With --once everything runs once, which proves no more than that it runs.
#include "Bench.h"
#include "form/ConfirmationDialog.h"
#include "platform/runtime/ErrorReport.h"
#include "service/frmDIR.h"

#include <cstdio>
#include <QApplication>
#include <QItemSelection>
#include <QKeyEvent>

using namespace qor;

namespace {

constexpr int fewRows = 500;
constexpr int manyRows = 5000;

QString NameOf(int number)
{
    QString name;
    for (; number > 0; number /= 26)
        name += QChar(u'a' + number % 26);
    return name;
}

/// The form on screen with rows in an order that no column sorts by, and its handlers.
class Editor
{
public:
    explicit Editor(int rowCount)
        : events(form), commands(form, rules, events), commit(form, rules, commands), mRowCount(rowCount)
    {
        form.Load();
        form.SetConfigID(1);
        form.SetPartitionID(1);
        ResetDirectoryListView(*form.LVDirectory);
        rules.LoadPromptMSGNodeNumber(form);
        form.show();
    }

    void Fill()
    {
        if (form.InEditMode())
            commands.cmdDirEdit_Click();
        ListItems& items = form.LVDirectory->Items();
        items.Clear();
        items.SetSorted(false);
        std::vector<ListRow> rows;
        for (int row = 0; row < mRowCount; ++row) {
            const int mixed = row * 7919 % 104729;
            rows.push_back(EntryRow(row + 1, {NameOf(mixed + 1), NameOf(row + 1), QString::number(mixed),
                                              QString::number(row + 1), u"1"_s}));
        }
        items.Append(std::move(rows));
        form.lstUniquePromptsForSaving->Clear();
        QCoreApplication::processEvents();
    }
    void SelectEverySecondRow()
    {
        const QAbstractItemModel& model = *form.LVDirectory->model();
        QItemSelection selection;
        for (int row = 0; row < mRowCount; row += 2)
            selection.select(model.index(row, 1), model.index(row, 5));
        form.LVDirectory->selectionModel()->select(selection, QItemSelectionModel::Select);
    }
    void SelectMiddleRow()
    {
        form.LVDirectory->SetSelected(mRowCount / 2, true);
        form.LVDirectory->EnsureVisible(mRowCount / 2);
    }
    void StartEditing()
    {
        SelectMiddleRow();
        commands.cmdDirEdit_Click();
    }
    void Type()
    {
        QKeyEvent key(QEvent::KeyPress, Qt::Key_X, Qt::NoModifier, u"x"_s);
        QCoreApplication::sendEvent(form.txtLastName, &key);
    }

    frmDIR form;
    BusinessRules rules;
    DirectoryListEvents events;
    EntryCommands commands;
    Commit commit;

private:
    int mRowCount;
};

struct Figure
{
    const char* name;
    std::function<void(Editor&)> prepare;
    std::function<void(Editor&)> run;
};

double Time(Editor& editor, const Figure& figure)
{
    editor.Fill();
    if (figure.prepare)
        figure.prepare(editor);
    QCoreApplication::processEvents();
    return TimeOf([&] {
        figure.run(editor);
        QCoreApplication::processEvents();
    });
}

const std::array figures{
    Figure{"remove every second row", &Editor::SelectEverySecondRow,
           [](Editor& it) { it.commands.cmdDirRemove_Click(); }},
    Figure{"up", &Editor::SelectMiddleRow, [](Editor& it) { it.commands.cmdDirUp_Click(); }},
    Figure{"sort by text", {}, [](Editor& it) { it.events.LVDirectory_ColumnClick(1); }},
    Figure{"sort by number", {}, [](Editor& it) { it.events.LVDirectory_ColumnClick(3); }},
    Figure{"type a character", &Editor::StartEditing, &Editor::Type},
    Figure{"check the directory", {}, [](Editor& it) { it.commit.CheckDirectoryData(); }},
    Figure{"check the message nodes", {}, [](Editor& it) { it.rules.CheckForUnReferencedNodes(it.form); }},
};

} // namespace

int main(int argc, char** argv)
{
    UseOffscreen();
    const QApplication application(argc, argv);
    SetErrorBox([](const QString& text, const QString& /*title*/, bool /*critical*/) { Fail(text); });
    AddBuiltInClass(confirmationDialogId, MakeConfirmationDialog);
    const int rounds = Rounds(21);
    const SampleDatabase database;
    AddMessageNodes(database, manyRows);
    for (const Figure& figure : figures) {
        std::vector<double> few;
        std::vector<double> many;
        std::vector<double> ratios;
        for (int round = 0; round < rounds; ++round) {
            few.push_back(Time(*std::make_unique<Editor>(fewRows), figure));
            many.push_back(Time(*std::make_unique<Editor>(manyRows), figure));
            ratios.push_back(many.back() / few.back());
        }
        std::printf("%s, %d rows: %.2f ms (wanted: at most 16); %d rows: %.2f ms, ratio %.1f (wanted: at most 12)\n",
                    figure.name, fewRows, Median(few), manyRows, Median(many), Median(ratios));
    }
    return 0;
}
