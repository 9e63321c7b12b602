#include "interchange/DirectoryImport.h"

#include "editor/EntryCommands.h"
#include "editor/History.h"
#include "form/EditorForm.h"
#include "interchange/IncomingEntries.h"
#include "interchange/SelectFilename.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/ui/MsgBox.h"

#include <QFile>
#include <QFileInfo>

namespace qor {

DirectoryImport::DirectoryImport(EditorForm& form, BusinessRules& rules, EntryCommands& entryCommands, History& history)
    : mForm(form), mRules(rules), mEntryCommands(entryCommands), mHistory(history)
{
}

void DirectoryImport::cmdOpenCSVFilename_Click()
{
    ReportErrors(u"cmdOpenCSVFilename_Click"_s, [&] {
        mEntryCommands.LeaveEditMode();
        QString fileName;
        std::optional<ListReport> report;
        if (SelectOpenFilename(mForm, fileName)) {
            mForm.txtCSVFilename->setText(fileName);
            report = Import(fileName);
            if (!report)
                return;
        }
        mForm.MarkChanged();
        if (report)
            TellReport(*report);
    });
}

/// One step; it ends before people read the report. Nothing when the import is called off.
std::optional<ListReport> DirectoryImport::Import(const QString& fileName)
{
    const History::Step step(mHistory, u"Import"_s);
    if (!PrepareList())
        return std::nullopt;
    ListReport report = ReadFile(fileName);
    mForm.MarkChanged();
    return report;
}

/// Asks whether the rows in the list make way; false when the import is called off.
bool DirectoryImport::PrepareList()
{
    ListItems& items = mForm.LVDirectory->Items();
    if (items.RowCount() == 0)
        return true;
    const MsgBoxAnswer answer = MsgBox(u"Do you want to overwrite the directory list?"_s,
                                       MsgBoxStyle::YesNoCancel | MsgBoxStyle::Question, u"Question"_s);
    if (answer == MsgBoxAnswer::Yes)
        items.Clear();
    return answer != MsgBoxAnswer::Cancel;
}

ListReport DirectoryImport::ReadFile(const QString& fileName)
{
    const Loading loading(mForm);
    QFile file(fileName);
    // Anything but a file, a pipe for one, may never end.
    if (QFileInfo(fileName).isFile() && file.open(QIODevice::ReadOnly))
        return AppendEntries(file);
    return {.broken = true};
}

ListReport DirectoryImport::AppendEntries(QIODevice& device)
{
    IncomingRows rows(mForm, mRules);
    ListReport report = rows.Read(device);
    mForm.LVDirectory->Items().Append(rows.Take());
    return report;
}

} // namespace qor
