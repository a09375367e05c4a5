#include "Peer.h"

#include <vips/vips.h>

void makeUpload(const PeerJob &job, std::vector<unsigned char> &upload)
{
    static const int started = VIPS_INIT("bench");
    VipsImage *small = nullptr;
    VipsImage *grey = nullptr;
    void *bytes = nullptr;
    size_t size = 0;
    if (started == 0
        && vips_thumbnail_buffer(const_cast<unsigned char *>(job.bytes), job.size, &small, job.width, "height",
                                 job.height, "size", VIPS_SIZE_FORCE, nullptr)
            == 0
        && vips_colourspace(small, &grey, VIPS_INTERPRETATION_B_W, nullptr) == 0
        && vips_jpegsave_buffer(grey, &bytes, &size, "Q", 1, nullptr) == 0)
        upload.assign(static_cast<unsigned char *>(bytes), static_cast<unsigned char *>(bytes) + size);
    g_free(bytes);
    g_clear_object(&grey);
    g_clear_object(&small);
}
