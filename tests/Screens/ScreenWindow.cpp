#include "ScreenWindow.h"

#include "Platform/Interface/Window.h"

#include <QDir>
#include <QTest>

ScreenWindow::ScreenWindow(const QSize &size)
    : m_finger(QTest::createTouchDevice())
{
    m_window.resize(size);
    m_window.show();
    m_window.requestActivate();
    if (!QTest::qWaitForWindowExposed(&m_window))
        qFatal("The test's window did not open");
    // Without a window manager nobody else gives the window the keyboard.
    m_window.requestActivate();
    if (!QTest::qWaitForWindowActive(&m_window))
        qFatal("The test's window did not get the keyboard");
}

ScreenWindow::~ScreenWindow() = default;

Platform::NavigationController *ScreenWindow::push(std::unique_ptr<Platform::ViewController> screen)
{
    auto stack = std::make_unique<Platform::NavigationController>(std::make_unique<Platform::ViewController>());
    const QPointer<Platform::NavigationController> presented(stack.get());
    Platform::ViewController *root = Platform::Window::of(&m_window)->rootViewController();
    bool appeared = false;
    root->present(std::move(stack), false, [&appeared] { appeared = true; });
    if (!QTest::qWaitFor([&] { return appeared; }) || !presented)
        qFatal("The navigation stack did not appear");
    Platform::ViewController *pushed = screen.get();
    presented->pushViewController(std::move(screen), false);
    if (!QTest::qWaitFor([&] { return presented->topViewController() == pushed && pushed->isVisible(); }))
        qFatal("The screen did not appear");
    return presented;
}

void ScreenWindow::tap(const QPointF &inWindow)
{
    QTest::touchEvent(&m_window, m_finger.get()).press(0, inWindow.toPoint(), &m_window);
    QTest::touchEvent(&m_window, m_finger.get()).release(0, inWindow.toPoint(), &m_window);
}

void ScreenWindow::tap(const QQuickItem *item)
{
    tap(item->mapToScene(item->boundingRect().center()));
}

void ScreenWindow::fling(const QPoint &from, const QPoint &to)
{
    constexpr int steps = 8;
    QTest::touchEvent(&m_window, m_finger.get()).press(0, from, &m_window);
    for (int step = 1; step <= steps; ++step) {
        QTest::touchEvent(&m_window, m_finger.get()).move(0, from + (to - from) * step / steps, &m_window);
        QTest::qWait(8);
    }
    QTest::touchEvent(&m_window, m_finger.get()).release(0, to, &m_window);
}

QImage ScreenWindow::grab(const QString &name)
{
    const QImage shot = m_window.grabWindow();
    const QString folder = qEnvironmentVariable("BREVANTO_SCREENSHOTS");
    if (!name.isEmpty() && !folder.isEmpty())
        shot.save(QStringLiteral("%1/%2.png").arg(folder, name));
    return shot;
}
