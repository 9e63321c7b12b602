#include "interchange/DirectoryImport.h"

#include "editor/EntryCommands.h"
#include "form/BusyForm.h"
#include "form/EditorForm.h"
#include "interchange/DelimitedReader.h"
#include "interchange/SelectFilename.h"
#include "platform/runtime/DateText.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/shell/ReplaceFile.h"
#include "platform/ui/MsgBox.h"
#include "platform/ui/Screen.h"
#include "rules/BusinessRules.h"
#include "rules/Validation.h"
#include "store/KELDARPlusFilesAndFolders.h"

#include <QDate>
#include <QDir>
#include <QFileInfo>

namespace qor {

namespace {

constexpr int toleratedErrors = 20; // one more ends the import

const QString lineBreak = u"\r\n"_s;

struct CsvEntry
{
    QString lastName;
    QString firstName;
    QString extension;
};

CsvEntry ReadEntry(DelimitedReader& reader)
{
    CsvEntry entry;
    entry.lastName = reader.ReadField();
    entry.firstName = reader.ReadField();
    entry.extension = reader.ReadField();
    return entry;
}

void AddRejected(ImportReport& report, const CsvEntry& entry, const QString& message)
{
    report.HadErrors = true;
    report.ErrorList += u'(' + entry.lastName + u',' + entry.firstName + u',' + entry.extension + u") :"_s + lineBreak +
                        message + lineBreak;
}

/// The prompts of an import's rows. The numbers in use are read once, for the first row; when that fails, which is
/// reported once, every row gets 1.
class NewPrompts
{
public:
    NewPrompts(EditorForm& form, BusinessRules& rules) : mForm(form), mRules(rules) {}

    QString Next()
    {
        if (!mHaveAsked)
            mUsed = mRules.UsedMessageNodeNumbers(mForm);
        mHaveAsked = true;
        return mUsed ? mRules.PromptForNewRow(mForm, &*mUsed) : u"1"_s;
    }

private:
    EditorForm& mForm;
    BusinessRules& mRules;
    bool mHaveAsked = false;
    std::optional<MessageNodeNumbers> mUsed;
};

void AddRow(ListItems& items, const CsvEntry& entry, const QString& prompt)
{
    items.Insert(items.RowCount(),
                 EntryRow(items.RowCount() + 1, {entry.lastName, entry.firstName, entry.extension, prompt, u"1"_s}));
}

void ReadEntries(EditorForm& form, BusinessRules& rules, QIODevice& device, ImportReport& report)
{
    NewPrompts prompts(form, rules);
    DelimitedReader reader(device);
    int errorCount = 0;
    while (!reader.AtEnd()) {
        // Equality, as for the commands: a list that was loaded longer is not stopped here.
        if (form.LVDirectory->Items().RowCount() == highestEntryCount) {
            report.LimitReached = true;
            return;
        }
        const CsvEntry entry = ReadEntry(reader);
        const QString message = ValidateData(entry.lastName, entry.firstName, entry.extension);
        if (message.isEmpty()) {
            AddRow(form.LVDirectory->Items(), entry, prompts.Next());
            continue;
        }
        AddRejected(report, entry, message);
        if (++errorCount > toleratedErrors) {
            report.ErrorList += u"Too many errors in this CSV file."_s + lineBreak + lineBreak;
            return;
        }
    }
}

/// The report replaces the one before it.
void WriteReportFile(const QString& errorList)
{
    QDir().mkpath(GetMiscFolder());
    const QString record = ShortDateText(QDate::currentDate()) + lineBreak + u"============================"_s +
                           lineBreak + errorList + lineBreak + lineBreak;
    try {
        ReplaceFile(GetMiscFolder() + u"DIRNodeError.txt"_s, record.toUtf8());
    } catch (const RuntimeError&) {
        // Not told: the message box has shown the same text.
    }
}

} // namespace

ImportReport ReadDirectory(EditorForm& form, BusinessRules& rules, QIODevice& device)
{
    ImportReport report;
    report.ErrorList = u"CSV File format: (LastName,FirstName,Extension)"_s + lineBreak + lineBreak +
                       u"ERROR IN FOLLOWING ENTRIES:"_s + lineBreak;
    try {
        ReadEntries(form, rules, device, report);
    } catch (...) {
        report.Broken = true;
    }
    return report;
}

DirectoryImport::DirectoryImport(EditorForm& form, BusinessRules& rules, EntryCommands& entryCommands)
    : mForm(form), mRules(rules), mEntryCommands(entryCommands)
{
}

void DirectoryImport::cmdOpenCSVFilename_Click()
{
    ReportErrors(u"cmdOpenCSVFilename_Click"_s, [&] {
        mEntryCommands.LeaveEditMode();
        QString fileName;
        if (SelectOpenFilename(mForm, fileName)) {
            mForm.txtCSVFilename->setText(fileName);
            if (!PrepareList())
                return;
            TellReport(ReadFile(fileName));
        }
        mForm.cmdApply->setEnabled(true);
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

ImportReport DirectoryImport::ReadFile(const QString& fileName)
{
    const HourglassPointer hourglass;
    const BusyForm busy(mForm);
    mForm.StatusBar1->SetPanelText(u"Loading ... Please wait."_s);
    QFile file(fileName);
    ImportReport report;
    // Anything but a file, a pipe for one, may never end.
    if (QFileInfo(fileName).isFile() && file.open(QIODevice::ReadOnly))
        report = ReadDirectory(mForm, mRules, file);
    else
        report.Broken = true;
    mForm.StatusBar1->SetPanelText(QString());
    return report;
}

void DirectoryImport::TellReport(const ImportReport& report)
{
    if (report.LimitReached) {
        MsgBox(u"Limited to %1 names in Directory list "_s.arg(highestEntryCount), MsgBoxStyle::Information,
               u"Information"_s);
    }
    if (report.Broken) {
        const QString gathered = report.HadErrors ? lineBreak + lineBreak + report.ErrorList : QString();
        MsgBox(u"Invalid csv file format."_s + gathered, MsgBoxStyle::Exclamation, u"Error"_s);
    } else if (report.HadErrors) {
        MsgBox(report.ErrorList, MsgBoxStyle::Exclamation, u"Error"_s);
        WriteReportFile(report.ErrorList);
    }
}

} // namespace qor
