#include "rules/TelephoneKeys.h"

#include "platform/runtime/Numbers.h"
#include "rules/PlainLetters.h"
#include "rules/Validation.h"

#include <algorithm>

namespace qor {

namespace {

constexpr QLatin1String keysOfLetters("22233344455566677778889999");

bool HasKey(QChar c)
{
    return IsLetter(c) || IsDigit(c);
}

QStringList SpelledNames(const DirectoryEntry& entry, SpelledName spelled)
{
    switch (spelled) {
    case SpelledName::Last:
        return {entry.lastName};
    case SpelledName::First:
        return {entry.firstName};
    case SpelledName::Either:
        break;
    }
    return {entry.lastName, entry.firstName};
}

} // namespace

bool HasKeys(QStringView name)
{
    return std::ranges::all_of(name, HasKey);
}

QString TelephoneKeys(const QString& name)
{
    QString keys;
    const QString spelled = SpelledOut(name);
    for (const QChar c : spelled) {
        if (IsLetter(c))
            keys += QChar(keysOfLetters[c.toLower().unicode() - u'a']);
        else if (IsDigit(c))
            keys += c;
    }
    return keys;
}

QStringList KeyCodes(const DirectoryEntry& entry, SpelledName spelled, int digits)
{
    QStringList codes;
    for (const QString& name : SpelledNames(entry, spelled))
        codes << TelephoneKeys(name).left(digits);
    codes.removeAll(QString());
    codes.removeDuplicates();
    return codes;
}

bool IsReachedBy(const QString& keys, const DirectoryEntry& entry, SpelledName spelled)
{
    return std::ranges::any_of(SpelledNames(entry, spelled),
                               [&](const QString& name) { return TelephoneKeys(name).startsWith(keys); });
}

} // namespace qor
