#include "rules/RowReader.h"

#include <algorithm>

namespace qor {

namespace {

/// A cell holds at most 32,767 characters, each of which may be a doubled quote, between two quotes.
constexpr qsizetype longestQuoted = 2 * 32'767 + 2;

/// In bytes: no field of the highest length takes more.
constexpr qsizetype longestUnquoted = 3 * RowReader::highestFieldLength + 3;

/// Where the field that begins with a quote is closed; -1 for nowhere. A quote without a closing one costs little: as
/// far as this looks, all others would have to come in pairs, which they rarely do.
qsizetype ClosingQuote(QByteArrayView text)
{
    qsizetype quote = text.indexOf('"', 1);
    while (quote >= 0 && quote + 1 < text.size() && text[quote + 1] == '"')
        quote = text.indexOf('"', quote + 2);
    return quote;
}

bool IsBlank(int byte)
{
    return byte == ' ' || byte == '\t' || byte == '\v' || byte == '\f';
}

void Limit(QString& field)
{
    constexpr qsizetype highest = RowReader::highestFieldLength;
    if (field.size() > highest)
        field = CutAtCharacter(field, highest) + u'\u2026';
}

void TrimEnd(QString& text)
{
    qsizetype length = text.size();
    while (length > 0 && text[length - 1].isSpace())
        --length;
    text.truncate(length);
}

} // namespace

QStringList RowReader::ReadRow(qsizetype highestCount)
{
    QStringList row;
    QString field;
    bool more = true;
    while (more) {
        const bool isWanted = row.size() < highestCount;
        more = ReadField(isWanted ? &field : nullptr);
        if (isWanted)
            row << field;
    }
    return row;
}

/// Text after the closing quote belongs to the field.
bool RowReader::ReadField(QString* field)
{
    SkipBlanks();
    const bool isQuoted = TakeQuoted(field);
    const QByteArrayView unquoted = TakeUnquoted();
    if (field && !isQuoted) {
        DecodeText(unquoted, *field);
        *field = std::move(*field).trimmed();
    } else if (field && !unquoted.isEmpty()) {
        QString behind = DecodedText(unquoted);
        TrimEnd(behind);
        *field += behind;
    }
    if (field)
        Limit(*field);
    return TakeFieldEnd();
}

void RowReader::SkipBlanks()
{
    while (IsBlank(mText.Peek()) && mText.Peek() != mSeparator)
        mText.Take();
}

/// False when the field does not begin with a quote, or nothing closes it.
bool RowReader::TakeQuoted(QString* field)
{
    if (mText.Peek() != '"')
        return false;
    const QByteArrayView ahead = mText.Ahead(longestQuoted);
    const qsizetype closing = ClosingQuote(ahead);
    if (closing < 0 || closing >= longestQuoted)
        return false;
    const QByteArrayView quoted = ahead.sliced(1, closing - 1);
    mLine += LineEndsIn(quoted);
    if (field) {
        DecodeText(quoted, *field);
        if (quoted.contains('"'))
            field->replace(u"\"\""_s, u"\""_s);
    }
    mText.Skip(closing + 1);
    return true;
}

/// The rest of the field; valid until the next call.
QByteArrayView RowReader::TakeUnquoted()
{
    mLong.clear();
    while (true) {
        const QByteArrayView ahead = mText.Ahead(1);
        const auto* const end = std::ranges::find_if(
            ahead, [this](char byte) { return byte == mSeparator || byte == '\r' || byte == '\n'; });
        const bool isEnd = end != ahead.end();
        const QByteArrayView piece = ahead.first(end - ahead.begin());
        mText.Skip(piece.size());
        if (isEnd && mLong.isEmpty())
            return piece;
        mLong += piece.first(std::min(piece.size(), longestUnquoted - mLong.size()));
        if (isEnd || ahead.isEmpty())
            return mLong;
    }
}

bool RowReader::TakeFieldEnd()
{
    const int byte = mText.Take();
    if (byte == mSeparator)
        return true;
    if (byte == '\r' && mText.Peek() == '\n')
        mText.Take();
    ++mLine;
    return false;
}

} // namespace qor
