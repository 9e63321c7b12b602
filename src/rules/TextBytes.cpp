#include "rules/TextBytes.h"

#include "platform/runtime/RuntimeError.h"

#include <array>
#include <QIODevice>

namespace qor {

namespace {

constexpr qint64 chunkSize = 65536;

/// False when it meets another character.
bool TakeAscii(QByteArrayView bytes, QChar* to)
{
    int all = 0;
    for (const char byte : bytes) {
        *to++ = QLatin1Char(byte);
        all |= byte;
    }
    return (all & 0x80) == 0;
}

/// Windows-1252 is Latin-1 but for these: what 0x80 to 0x9F stand for.
constexpr std::array<char16_t, 32> windows1252{0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                               0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                               0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                               0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

QString FromWindows1252(QByteArrayView bytes)
{
    QString text = QString::fromLatin1(bytes);
    for (QChar& c : text) {
        if (c >= QChar(0x80) && c <= QChar(0x9F))
            c = windows1252[static_cast<std::size_t>(c.unicode() - 0x80)];
    }
    return text;
}

} // namespace

TextBytes::TextBytes(QIODevice& device) : mDevice(device) {}

QByteArray TextBytes::ReadChunk()
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

/// A character may be split between two chunks; both converters remember its first half.
QByteArray TextBytes::Narrowed(const QByteArray& chunk)
{
    return mEncode(QString(mDecodeWide(chunk)));
}

bool TextBytes::Refill()
{
    if (!mStarted) {
        Start();
        return true;
    }
    const QByteArray chunk = mEnded ? QByteArray() : ReadChunk();
    mEnded = chunk.isEmpty();
    if (mEnded)
        return false;
    mBuffer = mWide ? Narrowed(chunk) : chunk;
    mPosition = 0;
    return true;
}

/// Looks for a byte order mark in the first bytes, which may come one by one.
void TextBytes::Start()
{
    constexpr qsizetype longestMark = 4;
    mStarted = true;
    QByteArray chunk = ReadChunk();
    mBuffer = chunk;
    while (!chunk.isEmpty() && mBuffer.size() < longestMark) {
        chunk = ReadChunk();
        mBuffer += chunk;
    }
    const auto encoding = QStringConverter::encodingForData(mBuffer);
    mWide = encoding && *encoding != QStringConverter::Utf8;
    if (mWide) {
        mDecodeWide = QStringDecoder(*encoding);
        mBuffer = Narrowed(mBuffer);
    } else if (encoding) {
        mPosition = 3; // the mark's own bytes
    }
}

QByteArrayView TextBytes::Ahead(qsizetype count)
{
    while (mBuffer.size() - mPosition < count && !mEnded) {
        const QByteArray rest = mBuffer.sliced(mPosition);
        if (!Refill())
            break;
        mBuffer = rest + mBuffer.sliced(mPosition);
        mPosition = 0;
    }
    return QByteArrayView(mBuffer).sliced(mPosition);
}

void DecodeText(QByteArrayView bytes, QString& text)
{
    if (text.isDetached() && text.capacity() >= bytes.size())
        text.resize(bytes.size());
    else
        text = QString(bytes.size(), Qt::Uninitialized);
    if (TakeAscii(bytes, text.data()))
        return;
    // A mark inside the text is an ordinary character; the one at the start of the file is gone already.
    QStringDecoder decode(QStringDecoder::Utf8,
                          QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    text = decode(bytes);
    if (decode.hasError())
        text = FromWindows1252(bytes);
}

int LineEndsIn(QByteArrayView bytes)
{
    if (!bytes.contains('\n') && !bytes.contains('\r')) // as nearly always
        return 0;
    int count = 0;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const bool isReturn = bytes[i] == '\r' && (i + 1 == bytes.size() || bytes[i + 1] != '\n');
        count += bytes[i] == '\n' || isReturn ? 1 : 0;
    }
    return count;
}

} // namespace qor
