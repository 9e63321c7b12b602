#include "rules/PlainLetters.h"

#include "platform/runtime/Numbers.h"
#include "rules/TypedText.h"
#include "rules/Validation.h"

#include <algorithm>
#include <array>

namespace qor {

namespace {

/// A letter that does not decompose into another one and an accent.
struct LetterSpelling
{
    char16_t letter; ///< a small one
    const char* spelling;
};

constexpr std::array spellings{
    LetterSpelling{0xDF, "ss"}, LetterSpelling{0xE6, "ae"}, LetterSpelling{0x153, "oe"}, LetterSpelling{0xFE, "th"},
    LetterSpelling{0xF8, "o"},  LetterSpelling{0x142, "l"}, LetterSpelling{0x111, "d"},  LetterSpelling{0xF0, "d"},
    LetterSpelling{0x127, "h"}, LetterSpelling{0x131, "i"}, LetterSpelling{0x14B, "n"},
};

/// Letters that the table does not have stay.
QString Spelled(QChar letter)
{
    const auto* const row = std::ranges::find(spellings, letter.toLower().unicode(), &LetterSpelling::letter);
    if (row == spellings.end())
        return letter;
    QString spelling = QString::fromLatin1(row->spelling);
    if (letter.isUpper())
        spelling[0] = spelling[0].toUpper();
    return spelling;
}

} // namespace

QString SpelledOut(const QString& text)
{
    QString spelled;
    const QString decomposed = text.normalized(QString::NormalizationForm_KD);
    for (const QChar letter : decomposed)
        spelled += Spelled(letter);
    return spelled;
}

QString PlainLetters(const QString& text)
{
    return Admitted(SpelledOut(text), IsLetter);
}

QString PlainDigits(const QString& text)
{
    QString digits;
    const QString decomposed = text.normalized(QString::NormalizationForm_KD);
    for (const QChar c : decomposed) {
        if (const int digit = c.digitValue(); digit >= 0)
            digits += QString::number(digit);
    }
    return digits;
}

} // namespace qor
