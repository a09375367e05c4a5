#pragma once

#include "ScreenWindow.h"
#include "support/FakeCamera.h"
#include "support/FakeReachability.h"
#include "support/ManualClock.h"
#include "support/RawServer.h"

#include "Brevanto/BrevantoCameraVC.h"
#include "Brevanto/ServerManager/ServiceAddress.h"

#include <QCoreApplication>

namespace Platform
{
class AlertController;
}

// The screens' time, which stands until the test moves it. For the network no time passes: the service is as slow as
// the test likes. The network's thread may ask for the time at any moment, so there is one clock for the whole program.
class ScreenClock final : public Platform::Clock
{
public:
    static ScreenClock &instance()
    {
        static auto *clock = new ScreenClock;
        return *clock;
    }

    std::chrono::milliseconds now() const override { return m_time.now(); }
    void after(std::chrono::milliseconds delay, QObject *context, std::function<void()> block) override
    {
        if (context->thread() == QCoreApplication::instance()->thread())
            m_time.after(delay, context, std::move(block));
    }
    void advance(std::chrono::milliseconds duration) { m_time.advance(duration); }

private:
    ScreenClock() { setCurrent(this); }

    ManualClock m_time;
};

// The camera screen over a host's window, with a camera, a network, a service and a time that the test controls. View
// animations show their end at once.
class CameraScreen
{
public:
    explicit CameraScreen(const QSize &size = {390, 844});
    ~CameraScreen();

    // Every test program has one network, since the SDK watches it from its first screen on.
    static FakeReachability &network();

    // Shows the screen as the host does.
    void open();
    bool isOpen() const { return screen && navigation; }

    QQuickItem *item(const QString &objectName) const;
    void tap(const QString &objectName);

    // The alert on the screen; null when there is none.
    Platform::AlertController *alert() const;
    // The alert's title; empty when there is none.
    QString alertTitle() const;
    // Taps the alert's button and waits until the alert is gone.
    bool choose(const QString &buttonTitle);

    // Moves the time forward by little steps until the condition holds; false when it does not come to that.
    bool advanceUntil(const std::function<bool()> &condition);
    // A photo as the camera takes it.
    static QByteArray photo();
    // Taps the shutter once the camera is live and waits until the camera has been asked for a photo.
    bool tapShutter();
    // Hands that photo over, none for empty bytes, and waits until the screen has dealt with it.
    void deliver(const QByteArray &jpeg);
    // Taps the shutter once the camera is live and waits until the upload has started, at the present time of the
    // clock.
    bool shoot();

    // An answer of the service: a match for each of these ad images.
    static RawServer::Answer matches(const QStringList &adImages);
    // The service gives this answer, not before server.resume().
    void prepareAnswer(RawServer::Answer answer);

    ScreenClock &clock = ScreenClock::instance();
    RawServer server;
    std::shared_ptr<FakeCamera> camera = std::make_shared<FakeCamera>();
    ScreenWindow window;
    QPointer<Platform::NavigationController> navigation;
    QPointer<BrevantoCameraVC> screen;

private:
    ServiceAddress::Override m_address;
};
