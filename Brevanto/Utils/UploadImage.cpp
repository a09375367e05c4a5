#include "Brevanto/Utils/UploadImage.h"

#include "Brevanto/Utils/ImageScale.h"

#include <cmath>

namespace
{

constexpr qreal portraitWidth = 480;
constexpr qreal landscapeWidth = 640;
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
    const Platform::Image scaled = scale::scaleToSize(photo, uploadSize(photo.size()));
    return scale::convertImageToGrayScale(scaled).jpegData(quality);
}
