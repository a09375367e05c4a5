#include "DemoDriver.h"
#include "DemoNetwork.h"
#include "Tour.h"

#include "Platform/Capture/ImageFileCamera.h"
#include "Platform/Network/ReachabilityTarget.h"

#include <QCommandLineParser>
#include <QFont>
#include <QGuiApplication>
#include <QHostAddress>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QTimer>
#include <QtWebView>

#include <cstdio>
#include <optional>

namespace
{

bool hasNetworkRoute()
{
    const auto internet = Platform::ReachabilityTarget::withAddress(QHostAddress::AnyIPv4);
    const quint32 flags = internet ? internet->flags().value_or(0) : 0;
    return flags & Platform::ReachabilityFlag::Reachable;
}

void useCameraOfPictures(const QString &path)
{
    Platform::CaptureDevice::registerDevice(std::make_shared<Platform::ImageFileCamera>(path));
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication::setOrganizationName(QStringLiteral("Brevanto"));
    QGuiApplication::setApplicationName(QStringLiteral("Brevanto Host"));
    QGuiApplication::setApplicationVersion(QStringLiteral("1.0"));
    // Before the application object: the web viewer shows no pages otherwise.
    QtWebView::initialize();
    QGuiApplication application(argc, argv);

    // Phones bring a good face of their own; many desktops have this one.
    QFont font = QGuiApplication::font();
    font.setFamilies(QStringList{QStringLiteral("Inter")} + font.families());
    QGuiApplication::setFont(font);

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("A small application that hosts the Brevanto SDK."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption photo(QStringLiteral("photo"),
                                   QStringLiteral("Let the camera see this picture, or the pictures of this folder."),
                                   QStringLiteral("file"));
    const QCommandLineOption fallback(
        QStringLiteral("photo-without-camera"),
        QStringLiteral("As --photo, but only where the machine has no camera of its own."), QStringLiteral("file"));
    const QCommandLineOption demo(
        QStringLiteral("demo"),
        QStringLiteral(
            "Go from the button to the hotspots by touch, save a picture of each screen into this folder and exit."),
        QStringLiteral("folder"));
    const QCommandLineOption online(
        QStringLiteral("assume-online"),
        QStringLiteral("Where the machine has no network route, take the service on the loopback for reachable."));
    const QCommandLineOption tour(
        QStringLiteral("tour"),
        QStringLiteral("Go through every screen and action, save a picture of each into this folder and exit."),
        QStringLiteral("folder"));
    const QCommandLineOption keyboard(QStringLiteral("keyboard"), QStringLiteral("Make the tour by keyboard alone."));
    const QCommandLineOption service(QStringLiteral("service-pid"),
                                     QStringLiteral("The match service's process, which the tour stops for a while."),
                                     QStringLiteral("number"));
    parser.addOptions({photo, fallback, demo, online, tour, keyboard, service});
    parser.process(application);

    std::optional<DemoNetwork> network;
    if (parser.isSet(tour)) {
        network.emplace();
    } else if (parser.isSet(online) && !hasNetworkRoute()) {
        std::puts("No network route; the loopback service is declared reachable.");
        std::fflush(stdout);
        network.emplace();
    }
    if (parser.isSet(photo))
        useCameraOfPictures(parser.value(photo));
    else if (parser.isSet(fallback) && Platform::CaptureDevice::devices().empty())
        useCameraOfPictures(parser.value(fallback));

    QQmlApplicationEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/BrevantoHost/Main.qml")));
    if (engine.rootObjects().isEmpty())
        return 1;

    auto *window = qobject_cast<QQuickWindow *>(engine.rootObjects().constFirst());
    if (parser.isSet(tour)) {
        const auto manner = parser.isSet(keyboard) ? WindowDriver::Manner::Keyboard : WindowDriver::Manner::Touch;
        QTimer::singleShot(0, &application, [&, manner] {
            QCoreApplication::exit(
                Tour(window, manner, parser.value(tour), *network, parser.value(service).toLongLong()).run());
        });
    } else if (parser.isSet(demo)) {
        QTimer::singleShot(0, &application, [window, folder = parser.value(demo)] {
            QCoreApplication::exit(DemoDriver(window, folder).run());
        });
    }
    return application.exec();
}
