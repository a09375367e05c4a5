#pragma once

#include "Inventory.h"
#include "Screens/ScreenWindow.h"
#include "examples/host/WindowDriver.h"
#include "support/FakeCamera.h"
#include "support/FakeReachability.h"
#include "support/ManualClock.h"

#include "Brevanto/BrevantoAdVC.h"
#include "Brevanto/BrevantoCameraVC.h"
#include "Brevanto/ServerManager/ServiceAddress.h"

#include <QRandomGenerator>

// A user who photographs one thing after the other and looks at what comes, for hours that pass in minutes: the time
// moves as fast as the application follows. The service is real; the camera sees the photos of a folder. What a step
// waits for and does not come is a StepFailed.
class Soak
{
public:
    // `service` is its scheme, host and port.
    Soak(const QString &service, qint64 servicePid, const QString &photoFolder, quint32 seed);
    ~Soak();

    // Makes so many captures; false when memory, screens, objects, threads, sockets or files have grown since the first
    // of them. Memory is held to that in runs of at least 400. With `leaks` a screen and a file are left behind, to see
    // that the growth is noticed.
    bool run(int count, bool leaks);

private:
    using Condition = std::function<bool()>;

    void capture();
    void useService(const QString &address);
    void timeOut();
    // Waits until the request has ended and looks at what came.
    void takeAnswer(std::chrono::milliseconds step);

    void openCamera();
    void closeCamera();
    void visitRecents();
    void lookAtRecents();
    void lookAtAd(Platform::ViewController *below);
    void lookAtOptions(BrevantoAdVC *ad);
    void lookAtGallery(BrevantoAdVC *ad);
    void goBackTo(Platform::ViewController *screen);
    // Leaves the request on its way and the service stopped.
    void shoot(const QByteArray &photo);

    // Lets the time pass until it is so.
    void until(const QString &what, const Condition &condition, std::chrono::milliseconds step) const;
    // Taps the control until that takes effect: one that is still on its way in takes no touches.
    void act(const QString &name, const Condition &effect);
    QQuickItem *touchable(const QString &name) const;
    bool isSettledOn(const Platform::ViewController *screen) const;
    bool isCameraLive() const;
    Platform::ViewController *top() const;
    void remember(Platform::ViewController *screen);

    // With everything closed. Waits for what ends by itself, until there is no more than at `first` or the bound
    // passes.
    Inventory takeInventory(int captures, const std::optional<Inventory> &first, std::chrono::milliseconds bound);

    ManualClock &m_clock;
    FakeReachability m_network;
    const QString m_service;
    const pid_t m_servicePid;
    std::optional<ServiceAddress::Override> m_address;
    std::shared_ptr<FakeCamera> m_camera = std::make_shared<FakeCamera>();
    ScreenWindow m_window;
    WindowDriver m_user;
    QRandomGenerator m_random;
    QList<QByteArray> m_ads; // photos
    QByteArray m_nothing; // a photo of no ad
    QPointer<BrevantoCameraVC> m_screen; // the camera's; null while the host alone is shown
    QPointer<QQmlEngine> m_engine; // of all scenes
    QList<QPointer<Platform::ViewController>> m_seen;
    bool m_isAnswerDue = false; // to a photo that was taken again
    struct {
        int ads = 0;
        int nothing = 0;
        int failures = 0;
        int timeOuts = 0; // some of them end with one of the others
    } m_outcomes;
};
