// What the form does on keys and in its menus, beside what its controls do.
#include "platform/runtime/ErrorReport.h"
#include "platform/ui/Events.h"
#include "service/FormActions.h"
#include "service/frmDIR.h"

#include <tuple>
#include <utility>

namespace qor {

void frmDIR::ConnectActions()
{
    mActions = new FormActions(*this, *fraDirectory, u"mnuDirectory"_s);
    AddHistoryActions();
    AddClipboardActions();
    AddListActions();
    AddFind();
    AddVersions();
    AddEntryKeys();
    OnEvent(LVDirectory, &ListView::ContextMenu, mActions, &FormActions::ShowMenu);
    ConnectImportMenu();
}

void frmDIR::ConnectImportMenu()
{
    DirectoryImport& import = mHandlers->directoryImport;
    auto* menu = new FormActions(*this, *fraDirectory, u"mnuImport"_s);
    menu->Add({.text = u"Import Rejected Entries"_s,
               .keys = {},
               .where = {},
               .run = [&import] { import.ImportRejected(); },
               .isUseful = DirectoryImport::CanImportRejected});
    cmdOpenCSVFilename->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(cmdOpenCSVFilename, &QWidget::customContextMenuRequested, menu, [this, menu](const QPoint& place) {
        GuardEvent([&] { menu->ShowMenu(cmdOpenCSVFilename->mapToGlobal(place)); });
    });
}

void frmDIR::AddHistoryActions()
{
    History& history = mHandlers->history;
    EntryKeys& keys = mHandlers->entryKeys;
    mActions->Add({.text = u"Undo"_s,
                   .keys = {Qt::CTRL | Qt::Key_Z},
                   .where = {this},
                   .run = [&keys] { keys.Undo(); },
                   .isUseful = [&history] { return history.CanUndo(); },
                   .currentText = [&history] { return history.UndoText(); }});
    mActions->Add({.text = u"Redo"_s,
                   .keys = {Qt::CTRL | Qt::Key_Y, Qt::CTRL | Qt::SHIFT | Qt::Key_Z},
                   .where = {this},
                   .run = [&keys] { keys.Redo(); },
                   .isUseful = [&history] { return history.CanRedo(); },
                   .currentText = [&history] { return history.RedoText(); }});
}

void frmDIR::AddClipboardActions()
{
    DirectoryClipboard& clipboard = mHandlers->clipboard;
    const auto canCopy = [&clipboard] { return clipboard.CanCopy(); };
    mActions->Add({.text = u"Cut"_s,
                   .keys = {Qt::CTRL | Qt::Key_X},
                   .where = {this},
                   .run = [&clipboard] { clipboard.Cut(); },
                   .isUseful = canCopy});
    mActions->Add({.text = u"Copy"_s,
                   .keys = {Qt::CTRL | Qt::Key_C},
                   .where = {this},
                   .run = [&clipboard] { clipboard.Copy(); },
                   .isUseful = canCopy});
    mActions->Add({.text = u"Paste"_s,
                   .keys = {Qt::CTRL | Qt::Key_V},
                   .where = {this},
                   .run = [&clipboard] { clipboard.Paste(); },
                   .isUseful = [&clipboard] { return clipboard.CanPaste(); }});
}

void frmDIR::AddListActions()
{
    EntryCommands& commands = mHandlers->entryCommands;
    DirectoryListEvents& events = mHandlers->listEvents;
    const auto hasSelection = [this] { return cmdDirRemove->isEnabled() && GetSelectedCount(*LVDirectory) > 0; };
    mActions->Add({.text = u"Remove"_s,
                   .keys = {Qt::Key_Delete},
                   .where = {LVDirectory},
                   .run = [&commands] { commands.LVDirectory_KeyDown(Qt::Key_Delete); },
                   .isUseful = hasSelection,
                   .listHandlesKey = true});
    for (const auto& [text, key, distance] :
         {std::tuple(u"Move Up"_s, Qt::Key_Up, -1), {u"Move Down"_s, Qt::Key_Down, 1}})
        mActions->Add({.text = text,
                       .keys = {Qt::ALT | key},
                       .where = {LVDirectory},
                       .run = [&commands, distance = distance] { commands.MoveBlock(distance); },
                       .isUseful = hasSelection});
    mActions->Add({.text = u"Select All"_s,
                   .keys = {Qt::CTRL | Qt::Key_A},
                   .where = {LVDirectory},
                   .run = [&events] { events.LVDirectory_KeyPress(ctrlA); },
                   .isUseful = [this] { return !InEditMode() && LVDirectory->Items().RowCount() > 0; },
                   .listHandlesKey = true});
}

void frmDIR::AddFind()
{
    FindEntries* find = &mHandlers->findEntries;
    OnEvent(fraFind, &FindLine::TextChanged, find, &FindEntries::TextChanged);
    OnEvent(fraFind, &FindLine::Next, find, &FindEntries::FindNext);
    OnEvent(fraFind, &FindLine::Previous, find, &FindEntries::FindPrevious);
    OnEvent(fraFind, &FindLine::Closed, find, &FindEntries::Close);
    mActions->Add(
        {.text = u"Find..."_s, .keys = {Qt::CTRL | Qt::Key_F}, .where = {this}, .run = [find] { find->Open(); }});
    mActions->Add({.keys = {Qt::Key_F3}, .where = {this}, .run = [find] { find->FindNext(); }});
    mActions->Add({.keys = {Qt::SHIFT | Qt::Key_F3}, .where = {this}, .run = [find] { find->FindPrevious(); }});
}

void frmDIR::AddVersions()
{
    Versions& versions = mHandlers->versions;
    mActions->Add({.text = u"Earlier Versions..."_s,
                   .keys = {},
                   .where = {},
                   .run = [&versions] { versions.Show(); },
                   .isUseful = [&versions] { return versions.CanShow(); }});
}

void frmDIR::AddEntryKeys()
{
    EntryKeys& keys = mHandlers->entryKeys;
    QList<QWidget*> textFields;
    for (const EntryEditor& editor : EntryEditors()) {
        if (editor.Text())
            textFields << editor.control;
    }
    for (const auto& [key, distance] : {std::pair(Qt::Key_Up, -1), {Qt::Key_Down, 1}}) {
        const auto walk = [&keys, distance = distance] { keys.WalkFields(distance); };
        mActions->Add({.keys = {key}, .where = textFields, .run = walk});
        mActions->Add({.keys = {Qt::CTRL | key}, .where = {cmbPromptNumber}, .run = walk});
    }
    mActions->Add({.keys = {Qt::Key_F2}, .where = {LVDirectory}, .run = [this] { cmdDirEdit->click(); }});
    mActions->Add({.keys = {Qt::CTRL | Qt::Key_Return, Qt::CTRL | Qt::Key_Enter},
                   .where = {this}, // a button that has the focus would be pressed otherwise: OK, after Apply
                   .run = [&keys] { keys.AddAndEdit(); }});
}

} // namespace qor
