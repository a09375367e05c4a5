#include "Brevanto/Utils/UploadImage.h"

#include <cmath>

namespace
{

constexpr qreal portraitWidth = 480;
constexpr qreal landscapeWidth = 640;
// No camera takes such a photo, and what reads it on the other side need not.
constexpr qreal largestHeight = 16384;
constexpr qreal quality = 0.0;

QSizeF uploadSize(const QSizeF &photo)
{
    const qreal width = photo.width() > photo.height() ? landscapeWidth : portraitWidth;
    return {width, std::trunc(photo.height() * width / photo.width())};
}

} // namespace

QByteArray uploadData(const Platform::Image &photo)
{
    if (photo.isNull())
        return {};
    const QSizeF size = uploadSize(photo.size());
    if (size.height() > largestHeight)
        return {};
    return Platform::Image(photo.uprightLuma(size.toSize())).jpegData(quality);
}
