#include "interchange/DirectoryExport.h"

#include "form/EditorForm.h"
#include "form/LongOperation.h"
#include "interchange/SelectFilename.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/shell/ReplaceFile.h"
#include "platform/ui/MsgBox.h"
#include "rules/EntryList.h"

namespace qor {

void DirectoryExport::cmdDirSaveList_Click()
{
    try {
        if (const auto fileName = SelectSaveFilename(mForm))
            Save(*fileName);
    } catch (...) {
        const QString description = CurrentRuntimeError().Description();
        mForm.StatusBar1->SetPanelText(QString());
        MsgBox(u"ERROR in saving entries... \r\nDESCRIPTION:%1\r\nLocation: [cmdDirSaveList]"_s.arg(description),
               MsgBoxStyle::Exclamation, u"ERROR"_s);
    }
}

void DirectoryExport::Save(const QString& fileName)
{
    const std::vector<int> skipped = WriteFile(fileName);
    if (!skipped.empty()) {
        MsgBox(u"Error in entry. Invalid entry wouldn't be saved to the file."_s, MsgBoxStyle::Exclamation, u"ERROR"_s);
    }
}

std::vector<int> DirectoryExport::WriteFile(const QString& fileName)
{
    const LongOperation running(mForm);
    mForm.StatusBar1->SetPanelText(u"Saving entries... Please wait."_s);
    const ListText list = WriteEntryList(EntriesOf(*mForm.LVDirectory));
    ReplaceFile(fileName, list.text, {.followsLink = true});
    for (const int row : list.skippedRows)
        PaintRow(*mForm.LVDirectory, row, invalidRowColour);
    mForm.StatusBar1->SetPanelText(QString());
    return list.skippedRows;
}

} // namespace qor
