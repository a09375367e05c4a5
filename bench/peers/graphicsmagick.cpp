#include "Peer.h"

#include <wand/magick_wand.h>

void makeUpload(const PeerJob &job, std::vector<unsigned char> &upload)
{
    static const bool started = (InitializeMagick(nullptr), true);
    (void)started;
    MagickWand *wand = NewMagickWand();
    const auto longSide = static_cast<unsigned long>(job.width > job.height ? job.width : job.height);
    size_t size = 0;
    unsigned char *bytes = nullptr;
    // The size hint is what makes its decoder shrink; it does not know yet which way the photo is stored.
    if (MagickSetSize(wand, longSide, longSide) == MagickPass
        && MagickReadImageBlob(wand, job.bytes, job.size) == MagickPass
        && MagickAutoOrientImage(wand, UndefinedOrientation) == MagickPass
        && MagickScaleImage(wand, job.width, job.height) == MagickPass
        && MagickSetImageType(wand, GrayscaleType) == MagickPass && MagickStripImage(wand) == MagickPass
        && MagickSetCompressionQuality(wand, 1) == MagickPass && MagickSetImageFormat(wand, "JPEG") == MagickPass)
        bytes = MagickWriteImageBlob(wand, &size);
    if (bytes)
        upload.assign(bytes, bytes + size);
    MagickRelinquishMemory(bytes);
    DestroyMagickWand(wand);
}
