#include "Peer.h"

#include <string>
#include <wand/MagickWand.h>

void makeUpload(const PeerJob &job, std::vector<unsigned char> &upload)
{
    static const bool started = (MagickWandGenesis(), true);
    (void)started;
    MagickWand *wand = NewMagickWand();
    // The size hint is what makes its decoder shrink; it does not know yet which way the photo is stored.
    const std::string longSide = std::to_string(job.width > job.height ? job.width : job.height);
    const std::string hint = longSide + "x" + longSide;
    size_t size = 0;
    unsigned char *bytes = nullptr;
    if (MagickSetOption(wand, "jpeg:size", hint.c_str()) && MagickReadImageBlob(wand, job.bytes, job.size)
        && MagickAutoOrientImage(wand) && MagickScaleImage(wand, job.width, job.height)
        && MagickSetImageType(wand, GrayscaleType) && MagickStripImage(wand)
        && MagickSetImageCompressionQuality(wand, 1) && MagickSetImageFormat(wand, "JPEG"))
        bytes = MagickGetImageBlob(wand, &size);
    if (bytes)
        upload.assign(bytes, bytes + size);
    MagickRelinquishMemory(bytes);
    DestroyMagickWand(wand);
}
