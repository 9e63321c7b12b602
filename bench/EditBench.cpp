// How long the editor's commands take on a full directory, and how that grows with ten times the rows: from the
// event until the form is painted again. With --once everything runs once, which proves no more than that it runs.
#include "Bench.h"
#include "editor/History.h"
#include "form/ConfirmationDialog.h"
#include "platform/runtime/ErrorReport.h"
#include "service/frmDIR.h"

#include <malloc.h>
#include <QApplication>
#include <QItemSelection>
#include <QKeyEvent>

using namespace qor;

namespace {

constexpr int fewRows = 500;
constexpr int manyRows = 5000;
constexpr double highestTime = 16;        ///< in ms, of a command
constexpr double highestGrowth = 12;      ///< from few rows to many
constexpr double highestStateTime = 0.1;  ///< in ms
constexpr double highestHistorySize = 20; ///< in MiB

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
        : history(form),
          events(form, history),
          commands(form, rules, events, history),
          drafts(form, history),
          commit(form, rules, commands, drafts),
          mRowCount(rowCount)
    {
        form.Load();
        form.SetConfigID(1);
        form.SetPartitionID(1);
        ResetDirectoryListView(*form.LVDirectory);
        rules.LoadPromptMSGNodeNumber(form);
        form.show();
    }

    ~Editor() { drafts.Drop(); } // else the next form asks for it
    Editor(const Editor&) = delete;
    Editor& operator=(const Editor&) = delete;

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
        history.Clear();
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
    void SelectBlock() { form.LVDirectory->SelectRows(mRowCount / 4, mRowCount / 2); }
    void RemoveEverySecondRow()
    {
        SelectEverySecondRow();
        commands.cmdDirRemove_Click();
    }
    void UndoRemoval()
    {
        RemoveEverySecondRow();
        history.Undo();
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
    History history;
    DirectoryListEvents events;
    EntryCommands commands;
    Drafts drafts;
    Commit commit;

private:
    int mRowCount;
};

struct Figure
{
    QString name;
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
    Figure{u"remove every second row"_s, &Editor::SelectEverySecondRow,
           [](Editor& it) { it.commands.cmdDirRemove_Click(); }},
    Figure{u"up"_s, &Editor::SelectMiddleRow, [](Editor& it) { it.commands.cmdDirUp_Click(); }},
    Figure{u"move a block up"_s, &Editor::SelectBlock, [](Editor& it) { it.commands.MoveBlock(-1); }},
    Figure{u"undo a removal"_s, &Editor::RemoveEverySecondRow, [](Editor& it) { it.history.Undo(); }},
    Figure{u"redo a removal"_s, &Editor::UndoRemoval, [](Editor& it) { it.history.Redo(); }},
    Figure{u"sort by text"_s, {}, [](Editor& it) { it.events.LVDirectory_ColumnClick(1); }},
    Figure{u"sort by number"_s, {}, [](Editor& it) { it.events.LVDirectory_ColumnClick(3); }},
    Figure{u"type a character"_s, &Editor::StartEditing, &Editor::Type},
    Figure{u"check the directory"_s, {}, [](Editor& it) { it.commit.CheckDirectoryData(); }},
    Figure{u"check the message nodes"_s, {}, [](Editor& it) { it.rules.CheckForUnReferencedNodes(it.form); }},
};

/// In ms: what a step costs before the command that it is for.
double TimeOfState(const Editor& editor)
{
    constexpr int states = 100;
    std::size_t rows = 0;
    const double time = TimeOf([&] {
        for (int i = 0; i < states; ++i)
            rows += TakeState(*editor.form.LVDirectory).rows.size();
    });
    if (rows == 0)
        Fail(u"no rows"_s);
    return time / states;
}

/// In MiB: what the history keeps after as many steps as it holds, each of which changes one row.
double SizeOfHistory(Editor& editor)
{
    constexpr int steps = 100;
    constexpr double mebibyte = 1 << 20;
    const std::size_t before = mallinfo2().uordblks;
    for (int i = 0; i < steps; ++i) {
        const History::Step step(editor.history, u"Edit"_s);
        editor.form.LVDirectory->Items().SetText(i, 1, u"Changed"_s);
    }
    return static_cast<double>(mallinfo2().uordblks - before) / mebibyte;
}

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
        Comparison many;
        for (int round = 0; round < rounds; ++round) {
            few.push_back(Time(*std::make_unique<Editor>(fewRows), figure));
            many.Add(Time(*std::make_unique<Editor>(manyRows), figure), few.back());
        }
        Report(u"%1, %2 rows"_s.arg(figure.name).arg(fewRows), Median(few), u"ms"_s, {}, highestTime);
        many.Report(u"%1, %2 rows, to %3"_s.arg(figure.name).arg(manyRows).arg(fewRows), highestGrowth);
    }
    Editor editor(fewRows);
    editor.Fill();
    std::vector<double> states;
    states.reserve(static_cast<std::size_t>(rounds));
    for (int round = 0; round < rounds; ++round)
        states.push_back(TimeOfState(editor));
    Report(u"taking a state of %1 rows"_s.arg(fewRows), Median(states), u"ms"_s, {}, highestStateTime);
    Report(u"history of 100 steps on %1 rows"_s.arg(fewRows), SizeOfHistory(editor), u"MiB"_s, {}, highestHistorySize);
    return 0;
}
