// How long the editor's commands take on a full directory, and how that grows with ten times the rows: from the
// event until the form is painted again. With --once everything runs once, which proves no more than that it runs.
#include "Bench.h"
#include "editor/History.h"
#include "form/ConfirmationDialog.h"
#include "platform/runtime/ErrorReport.h"
#include "service/frmDIR.h"

#include <cstdio>
#include <malloc.h>
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
    Figure{"move a block up", &Editor::SelectBlock, [](Editor& it) { it.commands.MoveBlock(-1); }},
    Figure{"undo a removal", &Editor::RemoveEverySecondRow, [](Editor& it) { it.history.Undo(); }},
    Figure{"redo a removal", &Editor::UndoRemoval, [](Editor& it) { it.history.Redo(); }},
    Figure{"sort by text", {}, [](Editor& it) { it.events.LVDirectory_ColumnClick(1); }},
    Figure{"sort by number", {}, [](Editor& it) { it.events.LVDirectory_ColumnClick(3); }},
    Figure{"type a character", &Editor::StartEditing, &Editor::Type},
    Figure{"check the directory", {}, [](Editor& it) { it.commit.CheckDirectoryData(); }},
    Figure{"check the message nodes", {}, [](Editor& it) { it.rules.CheckForUnReferencedNodes(it.form); }},
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
    Editor editor(fewRows);
    editor.Fill();
    std::vector<double> states;
    states.reserve(static_cast<std::size_t>(rounds));
    for (int round = 0; round < rounds; ++round)
        states.push_back(TimeOfState(editor));
    std::printf("taking a state of %d rows: %.3f ms (wanted: below 0.1)\n", fewRows, Median(states));
    std::printf("history of 100 steps on %d rows: %.1f MiB (wanted: below 20)\n", fewRows, SizeOfHistory(editor));
    return 0;
}
