// How much memory a photo takes on its way: made small, and put into the upload's body.

#include "HeapMeter.h"
#include "Made.h"

#include "Brevanto/ServerManager/BrevantoServerManager.h"
#include "Brevanto/Utils/UploadImage.h"

#include <QCoreApplication>
#include <QThread>

#include <benchmark/benchmark.h>

namespace
{

// Registers "name/ours", whose counter "peak" is the most bytes that `work` had at a time, beyond what was there
// before.
template <typename Work>
void registerPeak(const std::string &name, Work work)
{
    const auto run = [work](benchmark::State &state) {
        for ([[maybe_unused]] auto iteration : state) {
            HeapMeter::start();
            work();
            state.counters["peak"] = double(HeapMeter::peak());
        }
    };
    benchmark::RegisterBenchmark((name + "/ours").c_str(), run)->Iterations(1);
}

void registerPhoto(const std::string &name, const QSize &stored, int orientation)
{
    registerPeak(name, [photo = Made::photo(stored, orientation)] {
        if (uploadData(Platform::Image::withData(photo)).isEmpty())
            qFatal("The photo did not become an upload");
    });
}

// Makes the request of an upload, as far as the transport, whose session is over. The JPEG itself is counted.
void registerBody(const std::string &name, const std::shared_ptr<BrevantoServerManager> &manager, qsizetype size)
{
    registerPeak(name, [manager, size] {
        auto request = std::make_shared<bool>();
        const std::weak_ptr<bool> isUnderWay = request;
        manager->postCapturedImageData(QByteArray(size, 'x'), [request = std::move(request)](const auto &) {}, {});
        while (!isUnderWay.expired())
            QThread::yieldCurrentThread();
    });
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    registerPhoto("12 megapixels, upright", {4000, 3000}, 1);
    registerPhoto("12 megapixels, turned", {4000, 3000}, 6);
    registerPhoto("50 megapixels, upright", {8160, 6120}, 1);
    registerPhoto("50 megapixels, turned", {8160, 6120}, 6);

    const auto manager = BrevantoServerManager::create();
    manager->currentSession()->invalidate();
    registerBody("upload body, 20 KB photo", manager, 20'000);
    registerBody("upload body, 4 MB photo", manager, 4'000'000);

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
