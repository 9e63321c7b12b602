// The editor's form: its life from load to unload, which handler serves which event, and what keys and menus do
// (frmDIRActions.cpp). It contains no rule.
#pragma once

#include "editor/BusinessRules.h"
#include "editor/Commit.h"
#include "editor/DirectoryListEvents.h"
#include "editor/Drafts.h"
#include "editor/EntryCommands.h"
#include "editor/EntryFields.h"
#include "editor/EntryKeys.h"
#include "editor/FindEntries.h"
#include "editor/HeaderFields.h"
#include "editor/History.h"
#include "editor/RecordNavigation.h"
#include "editor/Versions.h"
#include "form/EditorForm.h"
#include "interchange/DirectoryClipboard.h"
#include "interchange/DirectoryExport.h"
#include "interchange/DirectoryImport.h"

#include <memory>

namespace qor {

class FormActions;

class frmDIR : public EditorForm
{
    Q_OBJECT
public:
    ~frmDIR() override;

protected:
    void Form_Load() override;
    void Form_Activate() override;
    void Form_Shown() override;
    void Form_Unload(bool& cancel) override;

private:
    /// The form's own rules and the handlers that call them, from Form_Load to the form's end.
    struct Handlers
    {
        explicit Handlers(EditorForm& form);

        BusinessRules rules;
        History history;
        DirectoryListEvents listEvents;
        EntryCommands entryCommands;
        EntryKeys entryKeys;
        FindEntries findEntries;
        EntryFields entryFields;
        HeaderFields headerFields;
        Drafts drafts;
        Versions versions;
        Commit commit;
        RecordNavigation navigation;
        DirectoryImport directoryImport;
        DirectoryExport directoryExport;
        DirectoryClipboard clipboard;
    };

    void ConnectEvents();
    void ConnectList();
    void ConnectEntryCommands();
    void ConnectEntryFields();
    void ConnectHeaderFields();
    void ConnectCommit();
    void ConnectNavigation();
    void ConnectInterchange();
    void ConnectActions();
    void AddHistoryActions();
    void AddClipboardActions();
    void AddListActions();
    void AddEntryKeys();
    void AddFind();
    void AddVersions();
    void ConnectImportMenu();

    std::unique_ptr<Handlers> mHandlers;
    FormActions* mActions = nullptr; ///< the form's own
};

} // namespace qor
