#include <Brevanto/Brevanto.h>
#include <Platform/Capture/ImageFileCamera.h>
#include <Platform/Foundation/NotificationCenter.h>

#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>

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

    bool isNotified = false;
    QObject observer;
    auto &center = Platform::NotificationCenter::defaultCenter();
    center.addObserver(&observer, kBrevantoReachabilityChangedNotification,
                       [&isNotified](const Platform::Notification &) { isNotified = true; });
    center.post(kBrevantoReachabilityChangedNotification, nullptr);

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
    return !isShown ? 2 : !isNotified ? 3 : !isVersioned ? 4 : shot.size() != item.size() ? 5 : 0;
}
