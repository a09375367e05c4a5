#pragma once

#include "ScreenWindow.h"
#include "support/FakeCamera.h"
#include "support/FakeReachability.h"
#include "support/ManualClock.h"
#include "support/RawServer.h"

#include "Brevanto/BrevantoCameraVC.h"
#include "Brevanto/ServerManager/ServiceAddress.h"

namespace Platform
{
class AlertController;
}

// The camera screen over a host's window, with a camera, a network, a service and a time that the test controls. View
// animations show their end at once.
class CameraScreen
{
public:
    explicit CameraScreen(const QSize &size = {390, 844});
    ~CameraScreen();

    // Every test program has one network, since the SDK watches it from its first screen on.
    static FakeReachability &network();
    // And one clock, since the threads of the network ask for the time at any moment.
    static ManualClock &sharedClock();

    // Shows the screen as the host does.
    void open();
    bool isOpen() const { return screen && navigation; }

    QQuickItem *item(const QString &objectName) const;
    void tap(const QString &objectName);

    // The alert on the screen; null when there is none.
    Platform::AlertController *alert() const;
    // The alert's title; empty when there is none.
    QString alertTitle() const;
    // Its title, message and buttons with their styles, as "Title|Message|OK/0".
    QString alertText() const;
    // Taps the alert's button and waits until the alert is gone.
    bool choose(const QString &buttonTitle);

    // Moves the time on while the service works on the upload: now and then a byte of its answer comes, so that the
    // request is not given up. False when the client takes no notice.
    bool wait(std::chrono::milliseconds duration);
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
    // The service gives this answer; from that stage on it waits for server.resume().
    void prepareAnswer(RawServer::Answer answer, RawServer::Stage stage = RawServer::Stage::Head);

    ManualClock &clock = sharedClock();
    RawServer server;
    std::shared_ptr<FakeCamera> camera = std::make_shared<FakeCamera>();
    ScreenWindow window;
    QPointer<Platform::NavigationController> navigation;
    QPointer<BrevantoCameraVC> screen;

private:
    ServiceAddress::Override m_address;
};
