// A hundred pulsing markers on the ad screen, beside as many bare rectangles with the same animation over the same
// picture. The time is the processor's, for each second.

#include "Screens.h"
#include "support/FakeReachability.h"
#include "support/RawServer.h"
#include "support/TestImages.h"

#include "Brevanto/BrevantoAdVC.h"
#include "Brevanto/Utils/BrevantoHotspotView.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <ctime>

using namespace Qt::StringLiterals;

namespace
{

constexpr int markerCount = 100;

constexpr auto rectangles = R"(
    import QtQuick
    Image {
        id: picture
        required property bool isPulsing
        fillMode: Image.PreserveAspectFit
        Repeater {
            model: 100
            Rectangle {
                id: disc
                required property int index
                x: picture.width * (index % 10) / 10
                y: picture.height * Math.floor(index / 10) / 10
                width: 30
                height: 30
                radius: 15
                SequentialAnimation on color {
                    running: picture.isPulsing
                    loops: Animation.Infinite
                    ColorAnimation { from: "#ffffffff"; to: "#00ffffff"; duration: 1000; easing.type: Easing.InOutQuad }
                    ColorAnimation { from: "#00ffffff"; to: "#ffffffff"; duration: 1000; easing.type: Easing.InOutQuad }
                }
            }
        }
    }
)";

double processorSeconds()
{
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) + 1e-9 * double(time.tv_nsec);
}

int framesWithin(QQuickWindow *window, int milliseconds)
{
    std::atomic_int frames = 0;
    const auto connection = QObject::connect(
        window, &QQuickWindow::frameSwapped, window, [&frames] { ++frames; }, Qt::DirectConnection);
    QTest::qWait(milliseconds);
    QObject::disconnect(connection);
    return frames;
}

// `setPulsing` starts and stops the animation in that window.
template <typename SetPulsing>
void registerPulsing(const char *name, QQuickWindow *window, SetPulsing setPulsing)
{
    benchmark::RegisterBenchmark(name,
                                 [=](benchmark::State &state) {
                                     for ([[maybe_unused]] auto iteration : state) {
                                         setPulsing(true);
                                         QTest::qWait(300);
                                         const double begin = processorSeconds();
                                         QElapsedTimer clock;
                                         clock.start();
                                         const int frames = framesWithin(window, 1500);
                                         const double seconds = clock.nsecsElapsed() * 1e-9;
                                         state.SetIterationTime((processorSeconds() - begin) / seconds);
                                         state.counters["frames"] = frames / seconds;
                                         setPulsing(false);
                                         QTest::qWait(300);
                                     }
                                 })
        ->UseManualTime()
        ->Iterations(1);
}

std::shared_ptr<BrevantoMatchGroup> groupWithMarkers(const QString &image)
{
    BrevantoMatchList matches;
    for (int index = 0; index < markerCount; ++index) {
        auto match = std::make_shared<BrevantoMatch>();
        match->setBackgroundImageUrl(image);
        match->setXPercent(index % 10 * 10 + 2);
        match->setYPercent(index / 10 * 10 + 2);
        matches.append(match);
    }
    return BrevantoMatchGroup::initWithMatches(matches, image);
}

qsizetype markersOf(const BrevantoAdVC *screen)
{
    const QList<QQuickItem *> subviews = screen->backgroundImageView()->childItems();
    return std::count_if(subviews.begin(), subviews.end(),
                         [](QQuickItem *item) { return qobject_cast<BrevantoHotspotView *>(item); });
}

} // namespace

int main(int argc, char **argv)
{
    const QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
    QGuiApplication application(argc, argv);
    const FakeReachability network;
    RawServer server;
    const QByteArray picture = TestImages::jpeg(TestImages::quarters({600, 1200}));
    server.setAnswer({.body = picture});
    QFile file(home.filePath(u"picture.jpg"_s));
    if (!file.open(QIODevice::WriteOnly) || file.write(picture) != picture.size())
        qFatal("The picture could not be written");
    file.close();

    ScreenWindow window;
    auto made = brevantoStoryboard().instantiate<BrevantoAdVC>(u"BrevantoAdVC"_s);
    BrevantoAdVC *screen = made.get();
    screen->setMatchGroup(groupWithMarkers(server.url(u"/ad.jpg"_s)));
    window.push(std::move(made));
    if (!QTest::qWaitFor([screen] { return markersOf(screen) == markerCount; }))
        qFatal("The markers did not come");
    screen->stopOrStartAnimateHotspotView(false);

    QQmlEngine engine;
    QQmlComponent scene(&engine);
    scene.setData(rectangles, {});
    QQuickWindow bare;
    bare.resize(window.window()->size());
    const std::unique_ptr<QObject> object(scene.createWithInitialProperties(
        {{u"isPulsing"_s, false}, {u"source"_s, QUrl::fromLocalFile(file.fileName())}}));
    auto *image = qobject_cast<QQuickItem *>(object.get());
    if (!image)
        qFatal("%s", qPrintable(scene.errorString()));
    image->setParentItem(bare.contentItem());
    image->setSize(screen->backgroundImageView()->size());
    bare.show();
    if (!QTest::qWaitForWindowExposed(&bare))
        qFatal("The bare window did not open");
    QTest::qWait(2500); // until the last pulse is over

    registerPulsing("100 markers/ours", window.window(),
                    [screen](bool isPulsing) { screen->stopOrStartAnimateHotspotView(isPulsing); });
    registerPulsing("100 markers/rectangles", &bare,
                    [image](bool isPulsing) { image->setProperty("isPulsing", isPulsing); });
    benchmark::RegisterBenchmark("stopped markers/ours", [&window](benchmark::State &state) {
        for ([[maybe_unused]] auto iteration : state)
            state.counters["frames"] = framesWithin(window.window(), 2000);
    })->Iterations(1);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
