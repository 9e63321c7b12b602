#include "rules/Validation.h"

#include "platform/runtime/ErrorReport.h"
#include "platform/runtime/Numbers.h"

#include <algorithm>

namespace qor {

namespace {

constexpr qsizetype highestExtensionLength = 16;

void AddLine(QString& message, const QString& text)
{
    if (!message.isEmpty())
        message += u"\r\n"_s;
    message += u"     "_s + text;
}

bool IsName(const QString& text)
{
    return std::ranges::all_of(text, IsLetter);
}

bool IsExtension(const QString& text)
{
    return text.size() <= highestExtensionLength && std::ranges::all_of(text, IsDigit);
}

void CheckField(QString& message, const QString& field, const QString& text, bool sound)
{
    if (text.isEmpty())
        AddLine(message, u"No Data in "_s + field);
    else if (!sound)
        AddLine(message, u"Invalid "_s + field);
}

} // namespace

QString ValidateData(const QString& lastName, const QString& firstName, const QString& extension)
{
    QString message;
    try {
        CheckField(message, u"LastName"_s, lastName, IsName(lastName));
        CheckField(message, u"FirstName"_s, firstName, IsName(firstName));
        CheckField(message, u"Extension"_s, extension, IsExtension(extension));
    } catch (...) {
        // The caller lists the entry as invalid and shows why, so nothing is shown here.
        message.prepend(CurrentRuntimeError().Description() + u"[ValidateData]\r\n"_s);
    }
    return message;
}

bool IsValid(const DirectoryEntry& entry)
{
    const auto& [lastName, firstName, extension, prompt, password] = entry;
    return !lastName.isEmpty() && !firstName.isEmpty() && !extension.isEmpty() && IsName(lastName) &&
           IsName(firstName) && IsExtension(extension);
}

bool IsSound(const DirectoryEntry& entry)
{
    return !entry.lastName.isEmpty() && !entry.firstName.isEmpty() && IsNumeric(entry.extension);
}

bool IsAcceptableLabel(const QString& label)
{
    return !label.contains(u'"') && !label.contains(u"''"_s);
}

bool IsAcceptableAccessCode(const QString& code)
{
    return code.isEmpty() || code.size() >= lowestAccessCodeLength;
}

std::vector<std::size_t> RepeatedPrompts(std::span<const DirectoryEntry> entries,
                                         const std::function<bool(const QString& prompt)>& meet)
{
    std::vector<std::size_t> rows;
    for (std::size_t row = 0; row < entries.size(); ++row) {
        if (meet(entries[row].prompt))
            rows.push_back(row);
    }
    return rows;
}

std::optional<EntriesFault> FindFault(const std::vector<DirectoryEntry>& entries,
                                      const std::function<bool(const QString& prompt)>& meet)
{
    const auto unsound = std::ranges::find_if_not(entries, IsSound);
    const std::vector<std::size_t> repeated = RepeatedPrompts({entries.begin(), unsound}, meet);
    if (unsound != entries.end())
        return EntriesFault{.isInvalid = true, .row = static_cast<std::size_t>(unsound - entries.begin())};
    if (!repeated.empty())
        return EntriesFault{.isInvalid = false, .row = repeated.back()};
    return std::nullopt;
}

} // namespace qor
