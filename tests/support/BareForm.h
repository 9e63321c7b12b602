// The form with nothing behind it: no rules, no handlers.
#pragma once

#include "form/DirectoryRows.h"
#include "form/EditorForm.h"
#include "platform/ui/ListView.h"
#include "platform/ui/MsgBox.h"

namespace qor {

class BareForm : public EditorForm
{
public:
    BareForm()
    {
        InstallErrorBox(); // as the service does
        SetConfigID(1);
        SetPartitionID(1);
    }
    /// Rows that have a text from "b,A,a" in all their sub-items.
    void FillList(const QString& texts)
    {
        ResetDirectoryListView(*LVDirectory);
        std::vector<ListRow> rows;
        for (const QString& text : texts.split(u',', Qt::SkipEmptyParts))
            rows.push_back(EntryRow(static_cast<int>(rows.size()) + 1, {text, text, text, text, text}));
        LVDirectory->Items().Append(std::move(rows));
    }

protected:
    void Form_Load() override {}
    void Form_Activate() override {}
    void Form_Unload(bool& /*cancel*/) override {}
};

} // namespace qor
