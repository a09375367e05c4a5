// Photos on their way to the upload.
#include "fuzz/Require.h"

#include "Brevanto/Utils/UploadImage.h"

#include <QGuiApplication>

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QByteArray upload = uploadData(Platform::Image::withData(bytes));
    if (upload.isEmpty())
        return 0;
    const Platform::Image sent = Platform::Image::withData(upload);
    const qreal width = sent.size().width();
    require(width == 480 || width == 640, "an upload is as wide as the service expects");
    require(sent.size().height() <= 16384, "an upload is no higher than the service reads");
    return 0;
}
