#include "rules/Validation.h"

#include "form/EditorForm.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/ui/MsgBox.h"

#include <algorithm>

namespace qor {

namespace {

constexpr qsizetype highestExtensionLength = 16;
constexpr qsizetype lowestAccessCodeLength = 4;

void AddLine(QString& message, const QString& text)
{
    if (!message.isEmpty())
        message += u"\r\n"_s;
    message += u"     "_s + text;
}

void CheckField(QString& message, const QString& field, const QString& text, bool sound)
{
    if (text.isEmpty())
        AddLine(message, u"No Data in "_s + field);
    else if (!sound)
        AddLine(message, u"Invalid "_s + field);
}

bool IsAllOf(const QString& text, bool (*admits)(QChar))
{
    return std::all_of(text.begin(), text.end(), admits);
}

} // namespace

QString ValidateData(const QString& lastName, const QString& firstName, const QString& extension)
{
    QString message;
    try {
        CheckField(message, u"LastName"_s, lastName, IsAllOf(lastName, IsLetter));
        CheckField(message, u"FirstName"_s, firstName, IsAllOf(firstName, IsLetter));
        CheckField(message, u"Extension"_s, extension,
                   extension.size() <= highestExtensionLength && IsAllOf(extension, IsDigit));
    } catch (...) {
        // The caller lists the entry as invalid and shows why, so nothing is shown here.
        message.prepend(CurrentRuntimeError().Description() + u"[ValidateData]\r\n"_s);
    }
    return message;
}

QString CheckAccessCode(EditorForm& form)
{
    return ReportErrors(u"CheckAccessCode"_s, [&]() -> QString {
        const qsizetype length = form.txtAccessCode->text().size();
        if (length == 0 || length >= lowestAccessCodeLength)
            return u"OK"_s;
        MsgBox(u"Too Few Characters."_s, MsgBoxStyle::Information, u"Information"_s);
        form.txtAccessCode->selectAll();
        form.txtAccessCode->setFocus();
        return {};
    });
}

} // namespace qor
