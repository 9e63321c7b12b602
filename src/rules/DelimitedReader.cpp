#include "rules/DelimitedReader.h"

#include "platform/runtime/RuntimeError.h"

#include <array>
#include <QIODevice>

namespace qor {

namespace {

constexpr int noByte = -1;
constexpr int endOfFileCharacter = 26;
constexpr qint64 chunkSize = 65536;

bool IsBlank(int byte)
{
    return byte == ' ' || byte == '\t';
}

bool EndsField(int byte)
{
    return byte == ',' || byte == '\r' || byte == '\n' || byte == endOfFileCharacter || byte == noByte;
}

/// Windows-1252 is Latin-1 but for these: what 0x80 to 0x9F stand for.
constexpr std::array<char16_t, 32> windows1252{0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                               0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                               0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                               0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

QString FromWindows1252(const QByteArray& bytes)
{
    QString text = QString::fromLatin1(bytes);
    for (QChar& c : text) {
        if (c >= QChar(0x80) && c <= QChar(0x9F))
            c = windows1252[static_cast<std::size_t>(c.unicode() - 0x80)];
    }
    return text;
}

QString Decoded(const QByteArray& bytes)
{
    // A mark inside the text is a character as others are; the one at the start of the file is gone already.
    QStringDecoder decode(QStringDecoder::Utf8,
                          QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    QString text = decode(bytes);
    return decode.hasError() ? FromWindows1252(bytes) : text;
}

} // namespace

DelimitedReader::DelimitedReader(QIODevice& device) : mDevice(device) {}

QByteArray DelimitedReader::ReadChunk()
{
    QByteArray chunk(chunkSize, Qt::Uninitialized);
    const qint64 size = mDevice.read(chunk.data(), chunkSize);
    if (size < 0) {
        throw RuntimeError(ErrorNumber::DeviceIO,
                           u"The file cannot be read: %1. Check that it is still there."_s.arg(mDevice.errorString()));
    }
    chunk.truncate(size);
    return chunk;
}

/// A character may be parted between two chunks; both converters remember its first half.
QByteArray DelimitedReader::Narrowed(const QByteArray& chunk)
{
    return mEncode(QString(mDecodeWide(chunk)));
}

bool DelimitedReader::Refill()
{
    if (!mStarted)
        return Start();
    const QByteArray chunk = ReadChunk();
    mBuffer = mWide ? Narrowed(chunk) : chunk;
    mPosition = 0;
    return !chunk.isEmpty();
}

/// Looks at the first bytes, which may come one by one, for the mark that tells the encoding.
bool DelimitedReader::Start()
{
    constexpr qsizetype longestMark = 4;
    mStarted = true;
    QByteArray chunk = ReadChunk();
    mBuffer = chunk;
    while (!chunk.isEmpty() && mBuffer.size() < longestMark) {
        chunk = ReadChunk();
        mBuffer += chunk;
    }
    const bool hasBytes = !mBuffer.isEmpty();
    const auto encoding = QStringConverter::encodingForData(mBuffer);
    mWide = encoding && *encoding != QStringConverter::Utf8;
    if (mWide) {
        mDecodeWide = QStringDecoder(*encoding);
        mBuffer = Narrowed(mBuffer);
    } else if (encoding) {
        mPosition = 3; // the mark's own bytes
    }
    return hasBytes;
}

int DelimitedReader::Peek()
{
    while (mPosition >= mBuffer.size()) {
        if (!Refill())
            return noByte;
    }
    return static_cast<unsigned char>(mBuffer[mPosition]);
}

int DelimitedReader::Take()
{
    const int byte = Peek();
    if (byte != noByte)
        ++mPosition;
    return byte;
}

bool DelimitedReader::AtEnd()
{
    const int byte = Peek();
    return byte == noByte || byte == endOfFileCharacter;
}

QString DelimitedReader::ReadField()
{
    if (AtEnd())
        throw RuntimeError(ErrorNumber::InputPastEnd, u"The file ends inside an entry."_s);
    SkipBlanks();
    QByteArray field = Peek() == '"' ? TakeQuoted() : QByteArray();
    TakeUnquoted(field);
    TakeFieldEnd();
    return Decoded(field);
}

void DelimitedReader::SkipBlanks()
{
    QByteArray blanks; // counted as a field is, so that an input of nothing else has an end
    while (IsBlank(Peek()))
        Add(blanks, Take());
}

QByteArray DelimitedReader::TakeQuoted()
{
    QByteArray field;
    Take();
    while (true) {
        const int byte = Take();
        if (byte == noByte)
            throw RuntimeError(ErrorNumber::InputPastEnd, u"The file ends inside a quoted field."_s);
        if (byte == '"') {
            if (Peek() != '"')
                return field;
            Take();
        }
        Add(field, byte);
    }
}

/// Takes what stands up to the end of the field, without the blanks at its end. Behind a quoted field that is
/// nothing, or text that belongs to it.
void DelimitedReader::TakeUnquoted(QByteArray& field)
{
    const qsizetype quotedLength = field.size();
    while (!EndsField(Peek()))
        Add(field, Take());
    while (field.size() > quotedLength && IsBlank(field.back()))
        field.chop(1);
}

void DelimitedReader::TakeFieldEnd()
{
    const int byte = Peek();
    if (byte == noByte || byte == endOfFileCharacter)
        return;
    Take();
    if (byte == '\r' && Peek() == '\n')
        Take();
}

void DelimitedReader::Add(QByteArray& field, int byte)
{
    if (field.size() == highestFieldLength) {
        throw RuntimeError(
            ErrorNumber::InvalidFileFormat,
            u"A field is longer than %1 bytes. Check that the file is a directory list."_s.arg(highestFieldLength));
    }
    field += static_cast<char>(byte);
}

} // namespace qor
