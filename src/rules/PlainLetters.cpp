#include "rules/PlainLetters.h"

#include "platform/runtime/Numbers.h"
#include "rules/TypedText.h"
#include "rules/Validation.h"

#include <array>

namespace qor {

namespace {

struct LetterSpelling
{
    char16_t letter; ///< small
    const char* spelling;
};

constexpr std::array spellings{
    LetterSpelling{0xDF, "ss"}, LetterSpelling{0xE6, "ae"}, LetterSpelling{0x153, "oe"}, LetterSpelling{0xFE, "th"},
    LetterSpelling{0xF8, "o"},  LetterSpelling{0x142, "l"}, LetterSpelling{0x111, "d"},  LetterSpelling{0xF0, "d"},
    LetterSpelling{0x127, "h"}, LetterSpelling{0x131, "i"}, LetterSpelling{0x14B, "n"},
};

/// Of a letter that is no other one with an accent; else the letter itself. A capital begins with one.
QString Spelled(QChar letter)
{
    for (const LetterSpelling& row : spellings) {
        if (letter.toLower() != row.letter)
            continue;
        QString spelling = QString::fromLatin1(row.spelling);
        if (letter.isUpper())
            spelling[0] = spelling[0].toUpper();
        return spelling;
    }
    return letter;
}

} // namespace

QString PlainLetters(const QString& text)
{
    QString spelled;
    const QString parted = text.normalized(QString::NormalizationForm_KD);
    for (const QChar letter : parted)
        spelled += Spelled(letter);
    return Admitted(spelled, IsLetter);
}

QString PlainDigits(const QString& text)
{
    QString digits;
    const QString parted = text.normalized(QString::NormalizationForm_KD);
    for (const QChar c : parted) {
        if (const int digit = c.digitValue(); digit >= 0)
            digits += QString::number(digit);
    }
    return digits;
}

} // namespace qor
