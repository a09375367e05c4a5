#include "DemoDriver.h"

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

namespace
{

// The internet of a machine that has the development service on its loopback and nothing else.
class ReachableTarget final : public Platform::ReachabilityTarget
{
public:
    std::optional<quint32> flags() const override { return Platform::ReachabilityFlag::Reachable; }
    bool setCallback(Callback, QObject *) override { return true; }
    bool schedule() override { return true; }
    void unschedule() override { }
};

bool hasNetworkRoute()
{
    const auto internet = Platform::ReachabilityTarget::withAddress(QHostAddress::AnyIPv4);
    const quint32 flags = internet ? internet->flags().value_or(0) : 0;
    return flags & Platform::ReachabilityFlag::Reachable;
}

void assumeOnline()
{
    if (hasNetworkRoute())
        return;
    std::puts("No network route; the loopback service is declared reachable.");
    std::fflush(stdout);
    Platform::ReachabilityTarget::setFactory(
        [](const QString &, const QHostAddress &) { return std::make_unique<ReachableTarget>(); });
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
    parser.addOptions({photo, fallback, demo, online});
    parser.process(application);

    if (parser.isSet(online))
        assumeOnline();
    if (parser.isSet(photo))
        useCameraOfPictures(parser.value(photo));
    else if (parser.isSet(fallback) && Platform::CaptureDevice::devices().empty())
        useCameraOfPictures(parser.value(fallback));

    QQmlApplicationEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/BrevantoHost/Main.qml")));
    if (engine.rootObjects().isEmpty())
        return 1;

    if (parser.isSet(demo)) {
        auto *window = qobject_cast<QQuickWindow *>(engine.rootObjects().constFirst());
        QTimer::singleShot(0, &application, [window, folder = parser.value(demo)] {
            QCoreApplication::exit(DemoDriver(window, folder).run());
        });
    }
    return application.exec();
}
