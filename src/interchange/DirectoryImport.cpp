#include "interchange/DirectoryImport.h"

#include "editor/EntryCommands.h"
#include "editor/History.h"
#include "form/EditorForm.h"
#include "interchange/IncomingEntries.h"
#include "interchange/RefusedRows.h"
#include "interchange/SelectFilename.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/ui/MsgBox.h"

#include <QFile>
#include <QFileInfo>

namespace qor {

namespace {

/// Regular files only: a pipe, for one, may never end.
bool OpenList(QFile& file)
{
    return QFileInfo(file.fileName()).isFile() && file.open(QIODevice::ReadOnly);
}

} // namespace

DirectoryImport::DirectoryImport(EditorForm& form, BusinessRules& rules, EntryCommands& entryCommands, History& history)
    : mForm(form), mRules(rules), mEntryCommands(entryCommands), mHistory(history)
{
}

void DirectoryImport::cmdOpenCSVFilename_Click()
{
    ReportErrors(u"cmdOpenCSVFilename_Click"_s, [&] {
        mEntryCommands.LeaveEditMode();
        if (const auto fileName = SelectOpenFilename(mForm))
            Import(*fileName);
        else
            mForm.MarkChanged();
    });
}

bool DirectoryImport::CanImportRejected()
{
    return QFileInfo::exists(RejectedListName());
}

void DirectoryImport::ImportRejected()
{
    ReportErrors(u"ImportRejected"_s, [&] {
        mEntryCommands.LeaveEditMode();
        Import(RejectedListName());
    });
}

void DirectoryImport::Import(const QString& fileName)
{
    mForm.txtCSVFilename->setText(fileName);
    const auto reading = AskForReading(fileName);
    if (!reading)
        return;
    if (const auto report = TakeEntries(fileName, *reading)) {
        KeepRefusedRows(*report);
        TellReport(*report);
    }
}

/// Asks how to read a file that looks like a table; a plain one is not asked about. Nothing when the answer is Cancel.
std::optional<DirectoryImport::Reading> DirectoryImport::AskForReading(const QString& fileName)
{
    QFile file(fileName);
    if (!OpenList(file))
        return Reading();
    const auto layout = DetectTable(file);
    if (!layout)
        return Reading();
    const MsgBoxAnswer answer =
        MsgBox(TableQuestion(*layout), MsgBoxStyle::YesNoCancel | MsgBoxStyle::Question, u"Question"_s);
    if (answer == MsgBoxAnswer::Cancel)
        return std::nullopt;
    return answer == MsgBoxAnswer::Yes ? Reading{layout} : Reading();
}

/// The step ends before the report comes up. Nothing when the import is cancelled.
std::optional<ListReport> DirectoryImport::TakeEntries(const QString& fileName, const Reading& reading)
{
    const History::Step step(mHistory, u"Import"_s);
    if (!PrepareList())
        return std::nullopt;
    ListReport report = ReadFile(fileName, reading);
    mForm.MarkChanged();
    return report;
}

/// Asks whether to overwrite the rows in the list; false when the answer is Cancel.
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

ListReport DirectoryImport::ReadFile(const QString& fileName, const Reading& reading)
{
    const Loading loading(mForm);
    QFile file(fileName);
    if (!OpenList(file))
        return {.broken = true};
    IncomingRows rows(mForm, mRules);
    ListReport report = rows.Read(file, reading.table);
    mForm.LVDirectory->Items().Append(rows.Take());
    return report;
}

} // namespace qor
