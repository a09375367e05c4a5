#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QtWebView>

int main(int argc, char *argv[])
{
    QGuiApplication::setOrganizationName(QStringLiteral("Brevanto"));
    QGuiApplication::setApplicationName(QStringLiteral("Brevanto QML Host"));
    QGuiApplication::setApplicationVersion(QStringLiteral("1.0"));
    // Before the application object: the web viewer shows no pages otherwise.
    QtWebView::initialize();
    QGuiApplication application(argc, argv);

    QQmlApplicationEngine engine;
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/BrevantoQmlHost/Main.qml")));
    return engine.rootObjects().isEmpty() ? 1 : QGuiApplication::exec();
}
