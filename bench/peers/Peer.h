#pragma once

#include <vector>

// What a peer gets: the JPEG bytes of a photo, and the size of the upright picture to make of it.
struct PeerJob {
    const unsigned char *bytes;
    unsigned long size;
    int width;
    int height;
};

// The upload's job done with another library: shrunk while it is decoded, upright, grey, a JPEG of the lowest quality.
// Empty when the library refuses. Each peer is a module of its own, because some of them share names.
extern "C" {
[[gnu::visibility("default")]] void makeUpload(const PeerJob &job, std::vector<unsigned char> &upload);
}
