#pragma once

#include <QByteArray>

namespace Platform
{

// An encoded image from anywhere without what only its decoders would spend memory and time on: texts, comments, chunks
// of no known kind. A PNG text of a few kilobytes unpacks to megabytes, and there may be a thousand. The few segments
// that cameras add to a JPEG stay: they are skipped faster than its bytes are copied.
struct EncodedImage {
    QByteArray format; // as QImageReader names it; empty when these bytes are no image
    QByteArray bytes;
    // Whether decoders keep all of its pixels in memory, however small the picture that is asked for.
    bool isReadWhole = true;

    // JPEG, PNG, GIF, WebP and BMP. What the bytes say is not looked at further than this takes.
    static EncodedImage from(const QByteArray &data);
};

} // namespace Platform
