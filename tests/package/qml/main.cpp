#include <QGuiApplication>
#include <QKeyEvent>
#include <QQmlApplicationEngine>
#include <QTimer>

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    QQmlApplicationEngine engine;
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Consumer/Main.qml")));
    if (engine.rootObjects().isEmpty())
        return 1;

    // The user goes back, and again while the screen is still on its way in.
    QTimer back;
    QObject::connect(&back, &QTimer::timeout, &application, [window = engine.rootObjects().constFirst()] {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QCoreApplication::sendEvent(window, &press);
    });
    back.start(100);
    return QGuiApplication::exec();
}
