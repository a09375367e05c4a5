#include <Brevanto/Brevanto.h>
#include <Platform/Capture/ImageFileCamera.h>
#include <Platform/Foundation/NotificationCenter.h>
#include <Platform/Network/ReachabilityTarget.h>

#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>

namespace
{

// A network whose cable the host pulls.
class Cable : public Platform::ReachabilityTarget
{
public:
    std::optional<quint32> flags() const override { return m_flags; }
    bool setCallback(Callback callback, QObject *info) override
    {
        m_callback = callback;
        m_info = info;
        return true;
    }
    bool schedule() override { return true; }
    void unschedule() override { }

    void pull()
    {
        m_flags = 0;
        m_callback(this, m_flags, m_info);
    }

private:
    quint32 m_flags = Platform::ReachabilityFlag::Reachable;
    Callback m_callback = nullptr;
    QObject *m_info = nullptr;
};

bool hearsOfTheNetwork()
{
    Cable *cable = nullptr;
    Platform::ReachabilityTarget::setFactory([&cable](const QString &, const QHostAddress &) {
        auto target = std::make_unique<Cable>();
        cable = target.get();
        return target;
    });
    const auto monitor = BrevantoReachability::reachabilityForInternetConnection();
    Platform::ReachabilityTarget::setFactory({});

    QList<int> statuses{monitor->currentReachabilityStatus()};
    QObject observer;
    Platform::NotificationCenter::defaultCenter().addObserver(
        &observer, kBrevantoReachabilityChangedNotification,
        [&](const Platform::Notification &) { statuses.append(monitor->currentReachabilityStatus()); }, monitor.get());
    monitor->startNotifier();
    cable->pull();
    return statuses == QList<int>{BrevantoReachabilityStatusWiFi, BrevantoReachabilityStatusNone};
}

} // namespace

// A host in C++: opens the camera screen over its window, sees that it stands there and observes what a host may
// observe.
int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    Platform::CaptureDevice::registerDevice(std::make_shared<Platform::ImageFileCamera>(QStringLiteral("nowhere")));

    QQuickWindow window;
    window.resize(390, 844);
    QQuickItem item(window.contentItem());
    item.setSize({40, 20});
    window.show();

    bool isShown = false;
    QTimer::singleShot(0, &application, [&] {
        const bool isShownBefore = brevantoShownScreen();
        BrevantoClient::sharedClient()->showCameraScreen();
        isShown = !isShownBefore && brevantoShownScreen() && kScreenWidth == 390;
        QCoreApplication::quit();
    });
    QGuiApplication::exec();
    const Platform::Image shot = scale::captureScreenShotOfView(&item);
    const bool isVersioned = BrevantoVersionNumber == BREVANTO_VERSION_MAJOR
        && BREVANTO_VERSION >= QT_VERSION_CHECK(BREVANTO_VERSION_MAJOR, 0, 0)
        && QByteArray(BrevantoVersionString).endsWith("PROJECT:Brevanto-" QT_STRINGIFY(BREVANTO_VERSION_MAJOR) "\n");
    return !isShown ? 2 : !hearsOfTheNetwork() ? 3 : !isVersioned ? 4 : shot.size() != item.size() ? 5 : 0;
}
