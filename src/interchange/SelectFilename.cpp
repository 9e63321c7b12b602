#include "interchange/SelectFilename.h"

#include "form/EditorForm.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/shell/SavedSettings.h"
#include "platform/ui/FileDialog.h"
#include "platform/ui/MsgBox.h"
#include "store/KELDARPlusFilesAndFolders.h"

#include <QFileInfo>

namespace qor {

namespace {

/// The "DialogDir" setting, else the folder of the file named in the form, else the configurations folder.
QString StartFolder(const EditorForm& form)
{
    QString saved = GetSetting(u"KELDAR+"_s, u"DialogDir"_s, u"DialogDir"_s);
    if (!saved.isEmpty())
        return saved;
    const QString named = form.txtCSVFilename->text();
    return named.isEmpty() ? GetConfigsFolder(QString()) : QFileInfo(named).absolutePath();
}

FileDialogRequest RequestFor(const EditorForm& form, const QString& title, int flags)
{
    return {title,
            {{u"CSV Files (*.csv)"_s, u"*.csv *.CSV"_s}, {u"All Files (*.*)"_s, u"*"_s}},
            flags,
            {},
            StartFolder(form),
            false};
}

bool IsCsv(const QString& fileName)
{
    return QFileInfo(fileName).suffix().toUpper() == u"CSV"_s;
}

/// The dialog has asked about the name as it was typed; a name that got its ending after that is asked about here.
bool MayReplace(const QString& fileName)
{
    return !QFileInfo::exists(fileName) ||
           MsgBox(u"%1 already exists.\r\nDo you want to replace it?"_s.arg(fileName),
                  MsgBoxStyle::YesNo | MsgBoxStyle::Question, u"Confirmation"_s) == MsgBoxAnswer::Yes;
}

} // namespace

std::optional<QString> SelectOpenFilename(const EditorForm& form)
{
    return ReportErrors(u"[SelectOpenFilename]"_s, [&] {
        auto chosen = ChooseFile(RequestFor(form, u"Open"_s, OFN_FILEMUSTEXIST));
        if (chosen && !IsCsv(*chosen))
            MsgBox(u"Please select a csv file"_s, MsgBoxStyle::Information, u"Information"_s);
        return chosen;
    });
}

std::optional<QString> SelectSaveFilename(const EditorForm& form)
{
    return ReportErrors(u"[SelectSaveFilename]"_s, [&] {
        FileDialogRequest request = RequestFor(form, u"Save"_s, OFN_OVERWRITEPROMPT);
        request.save = true;
        request.defaultExtension = u"csv"_s;
        auto chosen = ChooseFile(request);
        if (!chosen || IsCsv(*chosen))
            return chosen;
        *chosen += u".csv"_s;
        return MayReplace(*chosen) ? chosen : std::nullopt;
    });
}

} // namespace qor
