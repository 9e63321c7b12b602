// Reads the text of a device as bytes, in bounded memory, and decodes bytes of unknown encoding.
#pragma once

#include "platform/runtime/Text.h"

#include <QByteArray>
#include <QStringDecoder>
#include <QStringEncoder>

class QIODevice;

namespace qor {

/// UTF-8 and UTF-16 with a byte order mark come as UTF-8 without it; anything else comes as it is.
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
    /// What comes next: all that is at hand, and at least this many bytes unless the text ends before.
    QByteArrayView Ahead(qsizetype count);
    /// Skips bytes that Ahead gave.
    void Skip(qsizetype count) { mPosition += count; }

private:
    /// Replaces the bytes at hand by the next ones. At the end it returns false and changes nothing.
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

/// Decodes UTF-8, or Windows-1252 if the bytes are not valid UTF-8. Uses the room that the text has.
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
