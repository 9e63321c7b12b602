#include "rules/TabularText.h"

#include "rules/DelimitedWriter.h"

#include <algorithm>
#include <utility>

namespace qor {

namespace {

constexpr qsizetype columnCount = 3;
const QString captions = u"LastName\tFirstName\tExtension"_s;

QChar SeparatorOf(const QString& text)
{
    for (const QChar separator : {u'\t', u';'}) {
        if (text.contains(separator))
            return separator;
    }
    return u',';
}

bool IsLeftOut(const QStringList& row)
{
    const bool isEmpty = std::all_of(row.begin(), row.end(), [](const QString& field) { return field.isEmpty(); });
    return isEmpty || row.join(u'\t').compare(captions, Qt::CaseInsensitive) == 0;
}

QString Limited(const QString& field)
{
    constexpr qsizetype highest = TabularReader::highestFieldLength;
    return field.size() > highest ? CutAtCharacter(field, highest) + u'\u2026' : field;
}

} // namespace

TabularReader::TabularReader(QString text) : mText(std::move(text)), mSeparator(SeparatorOf(mText))
{
    Advance();
}

QStringList TabularReader::ReadRow()
{
    QStringList row = std::move(mRow);
    Advance();
    return row;
}

void TabularReader::Advance()
{
    mRow.clear();
    while (mRow.isEmpty() && mPosition < mText.size()) {
        QStringList row = ReadLine();
        if (!IsLeftOut(row))
            mRow = std::move(row);
    }
}

QStringList TabularReader::ReadLine()
{
    QStringList row;
    do {
        const QString field = ReadField();
        if (row.size() < columnCount)
            row << field;
    } while (TakeSeparator());
    TakeLineEnd();
    return row;
}

QString TabularReader::ReadField()
{
    while (!EndsField(mPosition) && mText[mPosition].isSpace())
        ++mPosition;
    QString field = TakeQuoted();
    field += TakeUnquoted();
    return Limited(field);
}

QString TabularReader::TakeQuoted()
{
    if (EndsField(mPosition) || mText[mPosition] != u'"')
        return {};
    const qsizetype first = mPosition + 1;
    const qsizetype closing = ClosingQuote(first);
    if (closing < 0)
        return {};
    mPosition = closing + 1;
    return mText.sliced(first, closing - first).replace(u"\"\""_s, u"\""_s);
}

/// Takes what stands up to the end of the field, without the blanks at its end. Behind a quoted field that is
/// nothing, or text that belongs to it.
QStringView TabularReader::TakeUnquoted()
{
    const qsizetype first = mPosition;
    while (!EndsField(mPosition))
        ++mPosition;
    QStringView text = QStringView(mText).sliced(first, mPosition - first);
    while (!text.isEmpty() && text.back().isSpace())
        text.chop(1);
    return text;
}

/// -1 for none, which a whole text has at most once: behind such a field all quotes come in pairs.
qsizetype TabularReader::ClosingQuote(qsizetype from) const
{
    qsizetype quote = mText.indexOf(u'"', from);
    while (quote >= 0 && quote + 1 < mText.size() && mText[quote + 1] == u'"')
        quote = mText.indexOf(u'"', quote + 2);
    return quote;
}

bool TabularReader::EndsField(qsizetype position) const
{
    if (position >= mText.size())
        return true;
    const QChar c = mText[position];
    return c == mSeparator || c == u'\r' || c == u'\n';
}

bool TabularReader::TakeSeparator()
{
    const bool isThere = mPosition < mText.size() && mText[mPosition] == mSeparator;
    if (isThere)
        ++mPosition;
    return isThere;
}

void TabularReader::TakeLineEnd()
{
    if (QStringView(mText).sliced(mPosition).startsWith(u"\r\n"))
        mPosition += 2;
    else if (mPosition < mText.size())
        ++mPosition;
}

QString TabularText(const std::vector<DirectoryEntry>& entries)
{
    QString text;
    for (const DirectoryEntry& entry : entries) {
        text += DelimitedLine({entry.lastName, entry.firstName, entry.extension, entry.prompt}, Quoting::WhereNeeded,
                              u'\t') +
                u'\n';
    }
    return text;
}

} // namespace qor
