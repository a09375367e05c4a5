#include "WindowDriver.h"

#include <QGenericPlugin>
#include <QGuiApplication>
#include <QTest>
#include <QTimer>

#include <cstdio>

namespace
{

// Opens the camera screen of the host in QML and goes back; the application's status says whether that came about.
int visit()
{
    try {
        const auto window = [] {
            const QWindowList windows = QGuiApplication::topLevelWindows();
            return windows.isEmpty() ? nullptr : qobject_cast<QQuickWindow *>(windows.constFirst());
        };
        if (!QTest::qWaitFor([&] { return window() != nullptr; }, 20000))
            throw StepFailed("there is no window");
        WindowDriver user(window(), WindowDriver::Manner::Touch);
        user.activate(user.requireItem(QStringLiteral("scanButton")));
        user.requireItem(QStringLiteral("captureButton"));
        user.settle();
        user.activate(user.requireItem(QStringLiteral("closeButton")));
        user.requireText(QStringLiteral("Welcome back."));
        return 0;
    } catch (const StepFailed &failure) {
        std::fprintf(stderr, "The visit ended: %s\n", failure.what());
        return 1;
    }
}

} // namespace

class VisitorPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "visitor.json")

public:
    QObject *create(const QString &, const QString &) override
    {
        // Whoever calls owns it; Qt does when it has loaded the plugins.
        auto timer = std::make_unique<QTimer>();
        timer->setSingleShot(true);
        connect(timer.get(), &QTimer::timeout, timer.get(), [] { QCoreApplication::exit(visit()); });
        timer->start();
        return timer.release();
    }
};

#include "VisitorPlugin.moc"
