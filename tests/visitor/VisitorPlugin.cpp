#include "WindowDriver.h"

#include <QGenericPlugin>
#include <QGuiApplication>
#include <QTest>
#include <QTimer>

#include <cstdio>

namespace
{

// Sees the camera screen of a host, once it has pressed the button for it where there is one, and goes back; the
// application's status says whether that came about.
int visit(const QString &button)
{
    try {
        const auto window = [] {
            const QWindowList windows = QGuiApplication::topLevelWindows();
            return windows.isEmpty() ? nullptr : qobject_cast<QQuickWindow *>(windows.constFirst());
        };
        if (!QTest::qWaitFor([&] { return window() != nullptr; }, 20000))
            throw StepFailed("there is no window");
        WindowDriver user(window(), WindowDriver::Manner::Touch);
        if (!button.isEmpty())
            user.activate(user.requireItem(button));
        user.requireItem(QStringLiteral("captureButton"));
        user.settle();
        user.activate(user.requireItem(QStringLiteral("closeButton")));
        if (!button.isEmpty())
            user.requireText(QStringLiteral("Welcome back."));
        user.require([&] { return !user.item(QStringLiteral("closeButton")); },
                     QStringLiteral("the camera screen did not go"));
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
    QObject *create(const QString &, const QString &button) override
    {
        // Whoever calls owns it; Qt does when it has loaded the plugins.
        auto timer = std::make_unique<QTimer>();
        timer->setSingleShot(true);
        connect(timer.get(), &QTimer::timeout, timer.get(), [button] { QCoreApplication::exit(visit(button)); });
        timer->start();
        return timer.release();
    }
};

#include "VisitorPlugin.moc"
