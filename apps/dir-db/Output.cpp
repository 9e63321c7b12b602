#include "Output.h"

#include "platform/runtime/RuntimeError.h"

#include <cstdio>

namespace qor {

namespace {

/// One character in UTF-16.
char16_t HarmlessCode(char16_t code)
{
    constexpr char16_t pictures = 0x2400; // the signs for the control characters, in their order
    constexpr char16_t deleteSign = 0x2421;
    constexpr char16_t replacement = 0xfffd;
    if (code < u' ')
        return static_cast<char16_t>(pictures + code);
    if (code == 0x7f)
        return deleteSign;
    const bool commands = (code >= 0x80 && code < 0xa0) || code == 0x061c || code == 0x200e || code == 0x200f ||
                          (code >= 0x2028 && code <= 0x202e) || (code >= 0x2066 && code <= 0x2069);
    return commands ? replacement : code;
}

void Print(const QString& line, std::FILE* stream)
{
    std::fputs(Harmless(line).toLocal8Bit() + '\n', stream);
}

} // namespace

QString Harmless(QString text)
{
    for (QChar& c : text)
        c = QChar(HarmlessCode(c.unicode()));
    return text;
}

void PrintLine(const QString& line)
{
    Print(line, stdout);
}

void PrintError(const QString& sentence)
{
    Print(sentence, stderr);
}

void FinishOutput()
{
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        throw RuntimeError(ErrorNumber::DeviceIO, u"Standard output cannot be written; what it holds is cut off."_s);
}

} // namespace qor
