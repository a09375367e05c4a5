#include "WindowDriver.h"

#include <QGenericPlugin>
#include <QGuiApplication>
#include <QTest>
#include <QTimer>

#include <cstdio>

namespace
{

// The enabled button whose text begins so.
QQuickItem *requireButton(const WindowDriver &user, const QString &beginning)
{
    QQuickItem *button = nullptr;
    const auto isThere = [&] {
        button = nullptr;
        user.visit([&](QQuickItem *item) {
            if (item->isEnabled() && item->inherits("QQuickButton")
                && item->property("text").toString().startsWith(beginning))
                button = item;
        });
        return button != nullptr;
    };
    user.require(isThere, QStringLiteral("there is no button \"%1\"").arg(beginning));
    return button;
}

// Presses the host's button, where it is told one, sees the camera screen, goes back and reads the greeting, where it
// is told one; the application's status says whether that came about.
int visit(const QString &button, const QString &greeting)
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
            user.activate(requireButton(user, button));
        user.requireItem(QStringLiteral("captureButton"));
        user.settle();
        user.activate(user.requireItem(QStringLiteral("closeButton")));
        user.requireText(greeting);
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
    // What it is told: "button/greeting", or nothing.
    QObject *create(const QString &, const QString &told) override
    {
        // Whoever calls owns it; Qt does when it has loaded the plugins.
        auto timer = std::make_unique<QTimer>();
        timer->setSingleShot(true);
        connect(timer.get(), &QTimer::timeout, timer.get(),
                [told] { QCoreApplication::exit(visit(told.section(u'/', 0, 0), told.section(u'/', 1))); });
        timer->start();
        return timer.release();
    }
};

#include "VisitorPlugin.moc"
