#include "rules/DelimitedReader.h"

#include "platform/runtime/RuntimeError.h"

#include <algorithm>

namespace qor {

namespace {

constexpr int noByte = TextBytes::noByte;
constexpr int endOfFileCharacter = 26;

bool IsBlank(int byte)
{
    return byte == ' ' || byte == '\t';
}

bool EndsField(int byte)
{
    return byte == ',' || byte == '\r' || byte == '\n' || byte == endOfFileCharacter || byte == noByte;
}

void RequireRoom(const QByteArray& field, qsizetype size)
{
    if (field.size() + size > DelimitedReader::highestFieldLength) {
        throw RuntimeError(ErrorNumber::InvalidFileFormat,
                           u"A field is longer than %1 bytes. Check that the file is a directory list."_s.arg(
                               DelimitedReader::highestFieldLength));
    }
}

} // namespace

DelimitedReader::DelimitedReader(QIODevice& device) : mText(device) {}

bool DelimitedReader::AtEnd()
{
    const int byte = mText.Peek();
    return byte == noByte || byte == endOfFileCharacter;
}

QString DelimitedReader::ReadField()
{
    if (AtEnd())
        throw RuntimeError(ErrorNumber::InputPastEnd, u"The file ends inside an entry."_s);
    SkipBlanks();
    QByteArray field = mText.Peek() == '"' ? TakeQuoted() : QByteArray();
    TakeUnquoted(field);
    TakeFieldEnd();
    return DecodedText(field);
}

void DelimitedReader::SkipBlanks()
{
    QByteArray blanks; // limited as a field is, so that an input of nothing else ends
    while (IsBlank(mText.Peek()))
        Add(blanks, mText.Take());
}

QByteArray DelimitedReader::TakeQuoted()
{
    QByteArray field;
    mText.Take();
    while (true) {
        const int byte = mText.Take();
        if (byte == noByte)
            throw RuntimeError(ErrorNumber::InputPastEnd, u"The file ends inside a quoted field."_s);
        if (byte == '"') {
            if (mText.Peek() != '"') {
                mLine += LineEndsIn(field);
                return field;
            }
            mText.Take();
        }
        Add(field, byte);
    }
}

/// Takes the rest of the field, without the blanks at its end. After a quoted part that is usually nothing; text that
/// does follow belongs to the field.
void DelimitedReader::TakeUnquoted(QByteArray& field)
{
    const qsizetype quotedLength = field.size();
    while (!EndsField(mText.Peek())) {
        const QByteArrayView ahead = mText.Ahead(1);
        const auto* const end =
            std::ranges::find_if(ahead, [](char byte) { return EndsField(static_cast<unsigned char>(byte)); });
        const QByteArrayView piece = ahead.first(end - ahead.begin());
        RequireRoom(field, piece.size());
        field += piece;
        mText.Skip(piece.size());
    }
    while (field.size() > quotedLength && IsBlank(field.back()))
        field.chop(1);
}

void DelimitedReader::TakeFieldEnd()
{
    const int byte = mText.Peek();
    if (byte == noByte || byte == endOfFileCharacter)
        return;
    mText.Take();
    mLine += byte == ',' ? 0 : 1;
    if (byte == '\r' && mText.Peek() == '\n')
        mText.Take();
}

void DelimitedReader::Add(QByteArray& field, int byte)
{
    RequireRoom(field, 1);
    field += static_cast<char>(byte);
}

} // namespace qor
