#include "Output.h"

#include "platform/runtime/RuntimeError.h"

#include <algorithm>
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

/// In columns of the terminal, where a mark takes none.
qsizetype Width(const QString& text)
{
    return std::ranges::count_if(text, [](QChar c) { return !c.isMark() && !c.isLowSurrogate(); });
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

void PrintTable(const QList<QStringList>& lines)
{
    QList<qsizetype> widths(lines[0].size(), 0);
    for (const QStringList& line : lines) {
        for (qsizetype i = 0; i < line.size(); ++i)
            widths[i] = std::max(widths[i], Width(line[i]));
    }
    for (const QStringList& line : lines) {
        QString text;
        for (qsizetype i = 0; i < line.size(); ++i)
            text += u"  "_s + line[i] + QString(widths[i] - Width(line[i]), u' ');
        while (text.endsWith(u' '))
            text.chop(1);
        PrintLine(text);
    }
}

void PrintRecord(const QString& record)
{
    QString text = Harmless(record);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QStringView rest = QStringView(record).sliced(i);
        if (rest.startsWith(u'\n') || rest.startsWith(u'\t') ||
            rest.startsWith(u"\r\n")) // a lone \r would write over the line
            text[i] = record[i];
    }
    std::fputs(text.toLocal8Bit() + '\n', stdout);
}

void PrintJson(const QByteArray& json)
{
    QString text;
    for (const QChar c : QString::fromUtf8(json)) {
        const bool isHarmless = c == u'\n' || HarmlessCode(c.unicode()) == c.unicode();
        text += isHarmless ? QString(c) : u"\\u%1"_s.arg(c.unicode(), 4, 16, QChar(u'0'));
    }
    std::fputs(text.toLocal8Bit(), stdout);
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
