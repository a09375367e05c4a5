// Pictures from the service on their way to a view.
#include "fuzz/Require.h"

#include "Platform/Graphics/Image.h"

#include <cstdint>

using Platform::Image;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const Image image = Image::withData(bytes);
    if (image.isNull())
        return 0;
    const QSize stored = image.bitmapSize();
    const bool isJpeg = bytes.startsWith("\xff\xd8");
    require(qint64(stored.width()) * stored.height()
                <= (isJpeg ? Image::largestPixelCount : Image::largestWholePixelCount),
            "an image has no more pixels than can be decoded");
    require(image.byteCount() <= bytes.size(), "an image keeps no more than came");
    int pieces = 0;
    const QSize drawn(360, 640);
    const QImage picture = image.upright(drawn, [&pieces] { return ++pieces > 0; });
    require(picture.isNull() || picture.size() == drawn, "a picture has the size that was asked for");
    require(image.upright(drawn, [&pieces] { return --pieces > 1; }).isNull(), "a decoding ends when it is told to");
    return 0;
}
