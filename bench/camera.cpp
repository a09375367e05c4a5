// From showCameraScreen to the first frame with what the camera sees, beside a bare window with a VideoOutput.

#include "Screens.h"
#include "Timing.h"
#include "support/FakeCamera.h"
#include "support/FakeReachability.h"
#include "support/TestImages.h"

#include "Brevanto/BrevantoClient.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QVideoSink>

using namespace Qt::StringLiterals;

namespace
{

constexpr QSize windowSize(390, 844);

bool showsVideo(const QQuickItem *videoOutput)
{
    return videoOutput && isInSight(videoOutput)
        && videoOutput->property("videoSink").value<QVideoSink *>()->videoFrame().isValid();
}

double cameraScreen(ScreenWindow &window)
{
    FirstFrame frame(window.window(), [&window] { return showsVideo(window.find(u"videoOutput"_s)); });
    BrevantoClient::sharedClient()->showCameraScreen();
    const double seconds = frame.wait();
    if (!QTest::qWaitFor([&] { return window.root()->presentedViewController()->isVisible(); }))
        qFatal("The camera screen did not come");
    bool isGone = false;
    window.root()->dismiss(false, [&isGone] { isGone = true; });
    if (!QTest::qWaitFor([&] { return isGone; }))
        qFatal("The camera screen did not go");
    return seconds;
}

double bareWindow(QQmlComponent &scene, const QImage &picture)
{
    QElapsedTimer clock;
    clock.start();
    QQuickWindow window;
    window.resize(windowSize);
    const std::unique_ptr<QObject> object(scene.create());
    auto *videoOutput = qobject_cast<QQuickItem *>(object.get());
    videoOutput->setParentItem(window.contentItem());
    videoOutput->setSize(windowSize);
    const double made = clock.nsecsElapsed() * 1e-9;
    FirstFrame frame(&window, [videoOutput] { return showsVideo(videoOutput); });
    window.show();
    videoOutput->property("videoSink").value<QVideoSink *>()->setVideoFrame(FakeCamera::frameOf(picture));
    const double seconds = made + frame.wait();
    return seconds;
}

template <typename Measure>
void registerScreen(const char *name, Measure measure)
{
    measure(); // the warm-up
    benchmark::RegisterBenchmark(name,
                                 [measure](benchmark::State &state) {
                                     for ([[maybe_unused]] auto iteration : state)
                                         state.SetIterationTime(measure());
                                 })
        ->UseManualTime()
        ->Iterations(1);
}

} // namespace

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    const FakeReachability network;
    const auto camera = std::make_shared<FakeCamera>();
    camera->scene = TestImages::quarters({960, 1280});
    Platform::CaptureDevice::registerDevice(camera);
    ScreenWindow window(windowSize);
    QQmlEngine engine;
    QQmlComponent scene(&engine);
    scene.setData("import QtMultimedia\nVideoOutput { fillMode: VideoOutput.PreserveAspectCrop }", {});

    registerScreen("first frame/ours", [&] { return cameraScreen(window); });
    registerScreen("first frame/VideoOutput", [&] { return bareWindow(scene, camera->scene); });
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    Platform::CaptureDevice::unregisterDevice(camera);
    return 0;
}
