#include "Peer.h"

#include <memory>
#include <turbojpeg.h>

namespace
{

// The smallest scaling of the transform that gives at least the pixels asked for, whichever way the photo is stored.
tjscalingfactor bestScale(int width, int height, const PeerJob &job)
{
    const int longSide = job.width > job.height ? job.width : job.height;
    const int storedLongSide = width > height ? width : height;
    int count = 0;
    const tjscalingfactor *factors = tjGetScalingFactors(&count);
    tjscalingfactor best{1, 1};
    for (int index = 0; index < count; ++index) {
        const int scaled = TJSCALED(storedLongSide, factors[index]);
        if (scaled >= longSide && scaled < TJSCALED(storedLongSide, best))
            best = factors[index];
    }
    return best;
}

} // namespace

// The floor: decoded to grey, and nothing else. Gives the pixels themselves.
void makeUpload(const PeerJob &job, std::vector<unsigned char> &upload)
{
    const std::unique_ptr<void, decltype(&tjDestroy)> decoder(tjInitDecompress(), tjDestroy);
    int width = 0, height = 0, subsampling = 0, colorSpace = 0;
    if (tjDecompressHeader3(decoder.get(), job.bytes, job.size, &width, &height, &subsampling, &colorSpace) != 0)
        return;
    const tjscalingfactor factor = bestScale(width, height, job);
    const int scaledWidth = TJSCALED(width, factor);
    const int scaledHeight = TJSCALED(height, factor);
    upload.resize(std::size_t(scaledWidth) * scaledHeight);
    if (tjDecompress2(decoder.get(), job.bytes, job.size, upload.data(), scaledWidth, 0, scaledHeight, TJPF_GRAY, 0)
        != 0)
        upload.clear();
}
