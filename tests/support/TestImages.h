#pragma once

#include <QImage>

// Pictures that tests recognise again after they have been turned, scaled or encoded.
namespace TestImages
{

// Four quarters: red top left, green top right, blue bottom left, white bottom right.
QImage quarters(const QSize &size);

// The colours of an image's quarters as letters, read row by row: "rgbw" for quarters() upright, 'k' for black, '-' for
// transparent, '?' for anything else.
QString seenIn(const QImage &image);

// JPEG bytes that say by EXIF how to turn the stored picture (1 to 8); 0 leaves the mark out.
QByteArray jpeg(const QImage &stored, int exifOrientation = 0);
QByteArray png(const QImage &image);

// 6 x 4 pixels in four colours.
QByteArray cmykJpeg();
// The header of 0 x 5 pixels with a few bytes behind it.
QByteArray emptyPng();

} // namespace TestImages
