#include "interchange/DirectoryImport.h"

#include "editor/BusinessRules.h"
#include "editor/EntryCommands.h"
#include "editor/History.h"
#include "form/EditorForm.h"
#include "form/LongOperation.h"
#include "interchange/SelectFilename.h"
#include "platform/runtime/DateText.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/shell/ReplaceFile.h"
#include "platform/ui/MsgBox.h"
#include "platform/ui/Screen.h"
#include "rules/EntryList.h"
#include "store/KELDARPlusFilesAndFolders.h"

#include <QDate>
#include <QDir>
#include <QFileInfo>

namespace qor {

namespace {

const QString lineBreak = u"\r\n"_s;

/// Appends the entries of a list as new rows.
ListReport AppendEntries(EditorForm& form, BusinessRules& rules, QIODevice& device)
{
    ListItems& items = form.LVDirectory->Items();
    NewRowPrompts prompts(form, rules);
    const auto append = [&](DirectoryEntry entry) {
        entry.prompt = prompts.Next();
        entry.password = u"1"_s;
        items.Insert(items.RowCount(), EntryRow(items.RowCount() + 1, entry));
    };
    return ReadEntryList(device, static_cast<std::size_t>(items.RowCount()), append);
}

/// The report replaces the one before it in one step. Failing to write it is not told.
void WriteReportFile(const QString& errorList)
{
    const QString record = ShortDateText(QDate::currentDate()) + lineBreak + u"============================"_s +
                           lineBreak + errorList + lineBreak + lineBreak;
    try {
        QDir().mkpath(GetMiscFolder());
        ReplaceFile(GetMiscFolder() + u"DIRNodeError.txt"_s, record.toUtf8());
    } catch (const RuntimeError&) {
        // The report is on screen.
    }
}

void TellReport(const ListReport& report)
{
    if (report.limitReached) {
        MsgBox(u"Limited to %1 names in Directory list "_s.arg(highestEntryCount), MsgBoxStyle::Information,
               u"Information"_s);
    }
    if (report.broken) {
        const QString gathered = report.hadErrors ? lineBreak + lineBreak + report.errorList : QString();
        MsgBox(u"Invalid csv file format."_s + gathered, MsgBoxStyle::Exclamation, u"Error"_s);
    } else if (report.hadErrors) {
        MsgBox(report.errorList, MsgBoxStyle::Exclamation, u"Error"_s);
        WriteReportFile(report.errorList);
    }
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
        QString fileName;
        if (SelectOpenFilename(mForm, fileName)) {
            mForm.txtCSVFilename->setText(fileName);
            const History::Step step(mHistory, u"Import"_s);
            if (!PrepareList())
                return;
            TellReport(ReadFile(fileName));
        }
        mForm.MarkChanged();
    });
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
    const HourglassPointer hourglass;
    const LongOperation running(mForm);
    mForm.StatusBar1->SetPanelText(u"Loading ... Please wait."_s);
    QFile file(fileName);
    ListReport report;
    // Anything but a file, a pipe for one, may never end.
    if (QFileInfo(fileName).isFile() && file.open(QIODevice::ReadOnly))
        report = AppendEntries(mForm, mRules, file);
    else
        report.broken = true;
    mForm.StatusBar1->SetPanelText(QString());
    return report;
}

} // namespace qor
