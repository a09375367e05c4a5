#include <Brevanto/Brevanto.h>
#include <Platform/Capture/ImageFileCamera.h>
#include <Platform/Foundation/NotificationCenter.h>

#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>

#include <cstring>

// A host in C++: opens the camera screen over its window, sees that it stands there and observes what a host may
// observe.
int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    Platform::CaptureDevice::registerDevice(std::make_shared<Platform::ImageFileCamera>(QStringLiteral("nowhere")));

    QQuickWindow window;
    window.resize(390, 844);
    window.show();

    bool isNotified = false;
    QObject observer;
    auto &center = Platform::NotificationCenter::defaultCenter();
    center.addObserver(&observer, kBrevantoReachabilityChangedNotification,
                       [&isNotified](const Platform::Notification &) { isNotified = true; });
    center.post(kBrevantoReachabilityChangedNotification, nullptr);

    bool isShown = false;
    QTimer::singleShot(0, &application, [&] {
        const auto itemsOfHost = window.contentItem()->childItems().size();
        BrevantoClient::sharedClient()->showCameraScreen();
        isShown = window.contentItem()->childItems().size() > itemsOfHost && kScreenWidth == 390;
        QCoreApplication::quit();
    });
    QGuiApplication::exec();
    const bool isVersioned = BrevantoVersionNumber == 1.0 && std::strstr(BrevantoVersionString, "PROJECT:Brevanto-1\n");
    return !isShown ? 2 : !isNotified ? 3 : !isVersioned ? 4 : 0;
}
