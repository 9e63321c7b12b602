#include "rules/TelephoneKeys.h"

#include "platform/runtime/Numbers.h"
#include "rules/Validation.h"

#include <algorithm>
#include <array>

namespace qor {

namespace {

constexpr QLatin1String keysOfLetters("22233344455566677778889999");

/// Letters that are no other letter with an accent.
struct WrittenOut
{
    char16_t letter; ///< a small one
    QLatin1String text;
};
constexpr std::array writtenOut{
    WrittenOut{u'ß', QLatin1String("ss")}, WrittenOut{u'æ', QLatin1String("ae")}, WrittenOut{u'œ', QLatin1String("oe")},
    WrittenOut{u'ø', QLatin1String("o")},  WrittenOut{u'ł', QLatin1String("l")},  WrittenOut{u'đ', QLatin1String("d")},
    WrittenOut{u'ð', QLatin1String("d")},  WrittenOut{u'þ', QLatin1String("th")}, WrittenOut{u'ħ', QLatin1String("h")},
    WrittenOut{u'ı', QLatin1String("i")},
};

bool HasKey(QChar c)
{
    return IsLetter(c) || IsDigit(c);
}

void AddKey(QString& keys, QChar c)
{
    if (IsLetter(c))
        keys += QChar(keysOfLetters[c.toLower().unicode() - u'a']);
    else if (IsDigit(c))
        keys += c;
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
    for (const QChar c : name.normalized(QString::NormalizationForm_KD)) {
        const auto* const longer = std::ranges::find(writtenOut, c.toLower().unicode(), &WrittenOut::letter);
        if (longer == writtenOut.end()) {
            AddKey(keys, c);
            continue;
        }
        for (const char letter : longer->text)
            AddKey(keys, QLatin1Char(letter));
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
