#pragma once

#include <QByteArray>

// Small images that take much memory or time of a decoder that believes them.
namespace ImageBombs
{

// Shows TestImages::quarters({32, 16}). Each text unpacks to eight million letters, before the pixels or behind them.
QByteArray pngWithTexts(int count, bool isBehind);
// The same picture with so many empty comments, before the pixels or behind them.
QByteArray jpegWithComments(int count, bool isBehind);
// A grey progressive JPEG of that many scans.
QByteArray jpegOfScans(int size, int count);
// A GIF whose only frame unpacks to many times its size: hours for 16 MiB of it.
QByteArray gifThatNeverEnds(int size);
// No image: a thousand million spaces in six megabytes, with the frame of gzip or, as "deflate" has it, of zlib.
QByteArray gigabyteOfSpaces(bool isGzip);

} // namespace ImageBombs
