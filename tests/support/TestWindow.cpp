#include "support/TestWindow.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

class HostItem : public QQuickItem
{
public:
    explicit HostItem(QQuickItem *parent)
        : QQuickItem(parent)
    {
        setAcceptedMouseButtons(Qt::AllButtons);
        setAcceptTouchEvents(true);
        setFlag(ItemIsFocusScope);
    }

    int events = 0;

protected:
    void mousePressEvent(QMouseEvent *) override { ++events; }
    void touchEvent(QTouchEvent *) override { ++events; }
    void keyPressEvent(QKeyEvent *) override { ++events; }
    void wheelEvent(QWheelEvent *) override { ++events; }
};

QQuickItem *findIn(QQuickItem *item, const std::function<bool(QQuickItem *)> &predicate)
{
    if (item->isVisible() && predicate(item))
        return item;
    const QList<QQuickItem *> children = item->childItems();
    for (QQuickItem *child : children) {
        if (QQuickItem *found = findIn(child, predicate))
            return found;
    }
    return nullptr;
}

} // namespace

TestWindow::TestWindow(const QSize &size)
    : m_window(std::make_unique<QQuickWindow>())
    , m_finger(QTest::createTouchDevice())
{
    m_window->setColor(QColor(0xdd, 0xe6, 0xf0));
    m_window->resize(size);
    auto *host = new HostItem(m_window->contentItem());
    host->setSize(QSizeF(size));
    host->setFocus(true);
    m_window->show();
    m_window->requestActivate();
    if (!QTest::qWaitForWindowExposed(m_window.get()))
        qFatal("The test's window did not open");
    // Without a window manager nobody else gives the window the keyboard.
    m_window->requestActivate();
    if (!QTest::qWaitForWindowActive(m_window.get()))
        qFatal("The test's window did not get the keyboard");
    host->forceActiveFocus();
}

TestWindow::~TestWindow() = default;

void TestWindow::close()
{
    m_window.reset();
}

void TestWindow::tap(const QPointF &inWindow)
{
    QTest::touchEvent(m_window.get(), m_finger.get()).press(0, inWindow.toPoint(), m_window.get());
    QTest::touchEvent(m_window.get(), m_finger.get()).release(0, inWindow.toPoint(), m_window.get());
}

void TestWindow::tap(const QQuickItem *item)
{
    tap(item->mapToScene(item->boundingRect().center()));
}

void TestWindow::fling(const QPoint &from, const QPoint &to)
{
    constexpr int steps = 8;
    QTest::touchEvent(m_window.get(), m_finger.get()).press(0, from, m_window.get());
    for (int step = 1; step <= steps; ++step) {
        QTest::touchEvent(m_window.get(), m_finger.get()).move(0, from + (to - from) * step / steps, m_window.get());
        QTest::qWait(8);
    }
    QTest::touchEvent(m_window.get(), m_finger.get()).release(0, to, m_window.get());
}

void TestWindow::pinch(const QPoint &middle, int from, int to)
{
    const std::unique_ptr<QPointingDevice> hand(QTest::createTouchDevice());
    const auto event = [&] { return QTest::touchEvent(m_window.get(), hand.get()); };
    const auto finger = [&](int distance) { return middle + QPoint(distance, 0); };
    event().press(0, finger(-from)).press(1, finger(from));
    for (int step = 1; step <= 10; ++step) {
        const int distance = from + (to - from) * step / 10;
        event().move(0, finger(-distance)).move(1, finger(distance));
        // The window hands on with the next frame what moved.
        bool isShown = false;
        const auto context = std::make_unique<QObject>();
        QObject::connect(m_window.get(), &QQuickWindow::frameSwapped, context.get(), [&] { isShown = true; });
        m_window->requestUpdate();
        if (!QTest::qWaitFor([&] { return isShown; }))
            qCritical("The window draws nothing");
    }
    event().release(0, finger(-to)).release(1, finger(to));
}

QQuickItem *TestWindow::hostItem() const
{
    return m_window->contentItem()->childItems().constFirst();
}

int TestWindow::hostEvents() const
{
    return static_cast<HostItem *>(hostItem())->events;
}

QQuickItem *TestWindow::find(const QString &objectName) const
{
    return find([&](QQuickItem *item) { return item->objectName() == objectName; });
}

QQuickItem *TestWindow::find(const std::function<bool(QQuickItem *)> &predicate) const
{
    return findIn(m_window->contentItem(), predicate);
}

QImage TestWindow::grab(const QString &name) const
{
    const QImage shot = m_window->grabWindow();
    const QString folder = qEnvironmentVariable("BREVANTO_SCREENSHOTS");
    if (!name.isEmpty() && !folder.isEmpty())
        shot.save(u"%1/%2.png"_s.arg(folder, name));
    return shot;
}
