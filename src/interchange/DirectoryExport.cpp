#include "interchange/DirectoryExport.h"

#include "form/BusyForm.h"
#include "form/EditorForm.h"
#include "interchange/DelimitedWriter.h"
#include "interchange/SelectFilename.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/shell/ReplaceFile.h"
#include "platform/ui/MsgBox.h"

#include <QBuffer>

namespace qor {

std::optional<std::vector<int>> WriteDirectory(const ListView& list, QIODevice& device)
{
    std::vector<int> skipped;
    for (int row = 0; row < list.Items().RowCount(); ++row) {
        if (!IsSoundRow(list, row))
            skipped.push_back(row);
        else if (!WriteDelimited(device, {EntryText(list, row, DirectoryColumn::LastName),
                                          EntryText(list, row, DirectoryColumn::FirstName),
                                          EntryText(list, row, DirectoryColumn::Extension)}))
            return std::nullopt;
    }
    return skipped;
}

void DirectoryExport::cmdDirSaveList_Click()
{
    try {
        QString fileName;
        if (SelectSaveFilename(mForm, fileName))
            Save(fileName);
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
    const BusyForm busy(mForm);
    mForm.StatusBar1->SetPanelText(u"Saving entries... Please wait."_s);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    std::vector<int> skipped = WriteDirectory(*mForm.LVDirectory, buffer).value();
    ReplaceFile(fileName, buffer.data());
    for (const int row : skipped)
        PaintRow(*mForm.LVDirectory, row, invalidRowColour);
    mForm.StatusBar1->SetPanelText(QString());
    return skipped;
}

} // namespace qor
