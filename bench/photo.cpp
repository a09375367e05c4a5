// A 12-megapixel photo to the upload, beside other libraries. Arguments beside Google Benchmark's: none; the peers are
// the modules that stand in the folder "peers" beside the program.

#include "Made.h"
#include "Timing.h"
#include "peers/Peer.h"

#include "Brevanto/Utils/UploadImage.h"

#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QLibrary>

#include <map>

namespace
{

using Peer = void (*)(const PeerJob &, std::vector<unsigned char> &);

std::map<std::string, Peer> loadedPeers()
{
    std::map<std::string, Peer> peers;
    const QDir folder(QCoreApplication::applicationDirPath() + QStringLiteral("/peers"));
    const QFileInfoList modules = folder.entryInfoList({QStringLiteral("*.so")}, QDir::Files);
    for (const QFileInfo &module : modules) {
        if (const auto peer = reinterpret_cast<Peer>(QLibrary::resolve(module.filePath(), "makeUpload")))
            peers.emplace(module.completeBaseName().toStdString(), peer);
        else
            qWarning("%s cannot be loaded", qPrintable(module.filePath()));
    }
    return peers;
}

std::vector<unsigned char> uploadBy(Peer peer, const QByteArray &photo, const QSize &size)
{
    std::vector<unsigned char> upload;
    peer({reinterpret_cast<const unsigned char *>(photo.constData()), static_cast<unsigned long>(photo.size()),
          size.width(), size.height()},
         upload);
    return upload;
}

int meanDifference(const QImage &picture, const QImage &other)
{
    qint64 sum = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            sum += qAbs(qGray(picture.pixel(x, y)) - qGray(other.pixel(x, y)));
    }
    return int(sum / (qint64(picture.width()) * picture.height()));
}

// Ends the program unless the peer made the same picture as the SDK: its time would say nothing.
void requireSamePicture(const std::string &name, const QImage &ours, const std::vector<unsigned char> &upload)
{
    const QImage theirs = QImage::fromData(upload.data(), int(upload.size()));
    if (theirs.size() != ours.size() || !theirs.isGrayscale() || meanDifference(ours, theirs) > 8)
        qFatal("%s made another picture of the photo", name.c_str());
}

void registerPhoto(const std::string &name, const QSize &stored, int orientation,
                   const std::map<std::string, Peer> &peers)
{
    const QByteArray photo = Made::photo(stored, orientation);
    const auto ours = [photo] { return uploadData(Platform::Image::withData(photo)); };
    const QImage upload = QImage::fromData(ours());
    registerTimed(name + "/ours", ours);
    for (const auto &[peerName, peer] : peers) {
        const auto theirs = [peer = peer, photo, size = upload.size()] { return uploadBy(peer, photo, size); };
        if (peerName != "turbojpeg")
            requireSamePicture(peerName, upload, theirs());
        registerTimed(name + '/' + peerName, theirs);
    }
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const std::map<std::string, Peer> peers = loadedPeers();
    registerPhoto("landscape, stored upright", {4000, 3000}, 1, peers);
    registerPhoto("landscape, stored turned", {3000, 4000}, 6, peers);
    registerPhoto("portrait, stored upright", {3000, 4000}, 1, peers);
    registerPhoto("portrait, stored turned", {4000, 3000}, 6, peers);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
