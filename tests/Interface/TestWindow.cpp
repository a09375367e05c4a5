#include "TestWindow.h"

#include <QTest>

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

QQuickItem *findIn(QQuickItem *item, const QString &objectName)
{
    if (item->objectName() == objectName && item->isVisible())
        return item;
    const QList<QQuickItem *> children = item->childItems();
    for (QQuickItem *child : children) {
        if (QQuickItem *found = findIn(child, objectName))
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
    if (!QTest::qWaitForWindowActive(m_window.get()))
        qFatal("The test's window did not open");
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
    return findIn(m_window->contentItem(), objectName);
}

QImage TestWindow::grab(const QString &name) const
{
    const QImage shot = m_window->grabWindow();
    const QString folder = qEnvironmentVariable("BREVANTO_SCREENSHOTS");
    if (!name.isEmpty() && !folder.isEmpty())
        shot.save(QStringLiteral("%1/%2.png").arg(folder, name));
    return shot;
}
