// How much memory a photo takes on its way: made small, and put into the upload's body and sent.

#include "HeapMeter.h"
#include "Made.h"

#include "Brevanto/ServerManager/BrevantoServerManager.h"
#include "Brevanto/ServerManager/ServiceAddress.h"
#include "Brevanto/Utils/UploadImage.h"
#include "support/RawServer.h"

#include <QCoreApplication>
#include <QSemaphore>

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

void post(const QByteArray &jpeg)
{
    QSemaphore answered;
    BrevantoServerManager::sharedServerManager()->postCapturedImageData(
        jpeg, [&answered](const auto &) { answered.release(); }, [](const auto &) { qFatal("The upload failed"); });
    answered.acquire();
}

// The JPEG itself is counted.
void registerBody(const std::string &name, qsizetype size)
{
    registerPeak(name, [size] { post(QByteArray(size, 'x')); });
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    registerPhoto("12 megapixels, upright", {4000, 3000}, 1);
    registerPhoto("12 megapixels, turned", {4000, 3000}, 6);
    registerPhoto("50 megapixels, upright", {8160, 6120}, 1);
    registerPhoto("50 megapixels, turned", {8160, 6120}, 6);

    RawServer server;
    const ServiceAddress::Override address(server.url(QString()));
    server.setHandler([](const RawServer::Request &) {
        HeapMeter::leaveThisThreadOut();
        return RawServer::Answer::json(R"({"status":{"code":0},"matches":[]})");
    });
    for (int warmUp = 0; warmUp < 5; ++warmUp)
        post(QByteArray(1000, 'x'));
    registerBody("upload body, 20 KB photo", 20'000);
    registerBody("upload body, 4 MB photo", 4'000'000);

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
