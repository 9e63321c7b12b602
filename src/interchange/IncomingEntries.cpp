#include "interchange/IncomingEntries.h"

#include "editor/EntryCommands.h"
#include "form/EditorForm.h"
#include "platform/runtime/DateText.h"
#include "platform/runtime/RuntimeError.h"
#include "platform/shell/ReplaceFile.h"
#include "platform/ui/MsgBox.h"
#include "store/KELDARPlusFilesAndFolders.h"

#include <QDate>

namespace qor {

namespace {

const QString lineBreak = u"\r\n"_s;

/// The report replaces the one before it in one step. Failing is silent.
void WriteReportFile(const QString& errorList)
{
    const QString record = ShortDateText(QDate::currentDate()) + lineBreak + u"============================"_s +
                           lineBreak + errorList + lineBreak + lineBreak;
    try {
        MakeFolder(GetMiscFolder(), Readers::Owner);
        ReplaceFile(GetMiscFolder() + u"DIRNodeError.txt"_s, record.toUtf8(), {});
    } catch (const RuntimeError&) {
        // The report is on screen.
    }
}

} // namespace

IncomingRows::IncomingRows(EditorForm& form, BusinessRules& rules)
    : mPrompts(form, rules), mNumber(form.LVDirectory->Items().RowCount())
{
}

ListReport IncomingRows::Read(const EntrySource& source)
{
    return ReadEntryList(source, static_cast<std::size_t>(mNumber), [this](const auto& entry) { Add(entry); });
}

ListReport IncomingRows::Read(QIODevice& device, const std::optional<TableLayout>& table)
{
    return ReadEntryList(device, table, static_cast<std::size_t>(mNumber), [this](const auto& entry) { Add(entry); });
}

void IncomingRows::Add(DirectoryEntry entry)
{
    if (entry.prompt.isEmpty()) {
        entry.prompt = mPrompts.Next();
        entry.password = newEntryPassword;
    }
    mRows.push_back(EntryRow(++mNumber, std::move(entry)));
}

Loading::Loading(EditorForm& form) : mForm(form), mRunning(form)
{
    mForm.StatusBar1->SetPanelText(u"Loading ... Please wait."_s);
}

Loading::~Loading()
{
    mForm.StatusBar1->SetPanelText(QString());
}

void TellReport(const ListReport& report)
{
    if (report.limitReached)
        TellDirectoryFull();
    if (report.broken) {
        const QString gathered = report.hadErrors ? lineBreak + lineBreak + report.errorList : QString();
        MsgBox(u"Invalid csv file format."_s + gathered, MsgBoxStyle::Exclamation, u"Error"_s);
    } else if (report.hadErrors) {
        MsgBox(report.errorList, MsgBoxStyle::Exclamation, u"Error"_s);
        WriteReportFile(report.errorList);
    }
}

} // namespace qor
