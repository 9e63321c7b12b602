// The text of a device as bytes, in bounded memory, and what bytes of unknown encoding say.
#pragma once

#include "platform/runtime/Text.h"

#include <QByteArray>
#include <QStringDecoder>
#include <QStringEncoder>

class QIODevice;

namespace qor {

/// UTF-8, or UTF-16 with a mark at the start, comes as UTF-8 without its mark; anything else as it is.
class TextBytes
{
public:
    /// What Peek and Take give at the end.
    static constexpr int noByte = -1;

    /// device: open for reading; it must outlive this.
    explicit TextBytes(QIODevice& device);

    /// Every one of these raises RuntimeError when the device fails.
    int Peek()
    {
        while (mPosition >= mBuffer.size()) {
            if (!Refill())
                return noByte;
        }
        return static_cast<unsigned char>(mBuffer[mPosition]);
    }
    int Take()
    {
        const int byte = Peek();
        if (byte != noByte)
            ++mPosition;
        return byte;
    }
    /// What comes next: at least this many bytes where there are as many, and all that is at hand.
    QByteArrayView Ahead(qsizetype count);
    /// Passes bytes that Ahead gave.
    void Skip(qsizetype count) { mPosition += count; }

private:
    /// The next bytes in place of those at hand; false, and nothing changes, at the end.
    bool Refill();
    void Start();
    QByteArray ReadChunk();
    QByteArray Narrowed(const QByteArray& chunk);

    QIODevice& mDevice;
    QByteArray mBuffer;
    qsizetype mPosition = 0;
    bool mStarted = false;
    bool mEnded = false;
    bool mWide = false;
    QStringDecoder mDecodeWide;
    QStringEncoder mEncode{QStringEncoder::Utf8};
};

/// UTF-8, and Windows-1252 where the bytes are not valid as such. The room that the text has is used again.
void DecodeText(QByteArrayView bytes, QString& text);
inline QString DecodedText(QByteArrayView bytes)
{
    QString text;
    DecodeText(bytes, text);
    return text;
}

/// CR LF, LF and CR each end a line.
int LineEndsIn(QByteArrayView bytes);

} // namespace qor
