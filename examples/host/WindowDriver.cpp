#include "WindowDriver.h"

#include <QAccessible>
#include <QPainter>
#include <QPointingDevice>
#include <QTest>

using namespace std::chrono_literals;

namespace
{

void visitShown(QQuickItem *item, const std::function<void(QQuickItem *)> &visitor)
{
    if (!item->isVisible() || item->opacity() <= 0)
        return;
    visitor(item);
    const QList<QQuickItem *> children = item->childItems();
    for (QQuickItem *child : children)
        visitShown(child, visitor);
}

QAccessible::Role roleOf(QQuickItem *item)
{
    const QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(item);
    return spoken ? spoken->role() : QAccessible::NoRole;
}

bool isControl(QQuickItem *item)
{
    switch (roleOf(item)) {
    case QAccessible::Button:
    case QAccessible::ButtonMenu:
    case QAccessible::CheckBox:
    case QAccessible::ListItem:
    case QAccessible::MenuItem:
    case QAccessible::Slider:
    case QAccessible::Cell:
        return true;
    default:
        return false;
    }
}

} // namespace

WindowDriver::WindowDriver(QQuickWindow *window, Manner manner)
    : m_window(window)
    , m_manner(manner)
    , m_finger(QTest::createTouchDevice())
{
    // Stock controls have no names until somebody asks for them.
    QAccessible::setActive(true);
    m_window->requestActivate();
}

WindowDriver::~WindowDriver() = default;

void WindowDriver::require(const std::function<bool()> &condition, const QString &what,
                           std::chrono::milliseconds bound) const
{
    if (!QTest::qWaitFor(condition, static_cast<int>(bound.count())))
        throw StepFailed(what);
}

QQuickItem *WindowDriver::requireItem(const QString &objectName) const
{
    require([&] { return item(objectName) != nullptr; }, objectName + QStringLiteral(" did not come"));
    return item(objectName);
}

QQuickItem *WindowDriver::requireControl(const QString &name) const
{
    const auto isReady = [&] {
        const QQuickItem *found = control(name);
        return found && found->isEnabled();
    };
    require(isReady, QStringLiteral("there is no control \"%1\"").arg(name));
    return control(name);
}

void WindowDriver::requireText(const QString &text) const
{
    require([&] { return showsText(text); }, QStringLiteral("\"%1\" did not come").arg(text));
}

QQuickItem *WindowDriver::item(const QString &objectName) const
{
    QQuickItem *found = nullptr;
    visit([&](QQuickItem *item) {
        if (item->objectName() == objectName)
            found = item;
    });
    return found;
}

QQuickItem *WindowDriver::control(const QString &name) const
{
    QQuickItem *found = nullptr;
    visit([&](QQuickItem *item) {
        if (isControl(item) && spokenName(item) == name)
            found = item;
    });
    return found;
}

bool WindowDriver::showsText(const QString &text) const
{
    bool found = false;
    visit([&](QQuickItem *item) { found = found || item->property("text").toString().contains(text); });
    return found;
}

// On the screen: shown, with a size, and within the window. Screens below the top one are hidden by their stack.
void WindowDriver::visit(const std::function<void(QQuickItem *)> &visitor) const
{
    const QRectF window(QPointF(), QSizeF(m_window->size()));
    visitShown(m_window->contentItem(), [&](QQuickItem *item) {
        if (item->width() > 0 && item->height() > 0 && window.intersects(item->mapRectToScene(item->boundingRect())))
            visitor(item);
    });
}

void WindowDriver::activate(const QString &name)
{
    activate(requireControl(name));
}

void WindowDriver::activate(QQuickItem *item)
{
    if (m_manner == Manner::Touch) {
        tap(centerOf(item));
        return;
    }
    focus(item);
    press(Qt::Key_Space);
}

void WindowDriver::focus(QQuickItem *item)
{
    const auto isFocused = [&] {
        const QQuickItem *focused = m_window->activeFocusItem();
        if (!focused)
            return false;
        // A tile in a row of several says itself whether the keys have reached it.
        const QVariant isCurrent = item->property("isCurrent");
        if (isCurrent.isValid())
            return isCurrent.toBool();
        if (focused == item || item->isAncestorOf(focused))
            return true;
        const auto *current = focused->property("currentItem").value<QQuickItem *>();
        return current && focused->isAncestorOf(item)
            && (current == item || current->isAncestorOf(item) || item->isAncestorOf(current));
    };
    require([this] { return m_window->isActive(); }, QStringLiteral("the window did not get the keyboard"));
    const QPointer<QQuickItem> guard(item);
    constexpr int mostStops = 60;
    for (int i = 0; i < mostStops && guard && !isFocused(); ++i) {
        // Within a list the arrow keys lead on.
        const QQuickItem *list = m_window->activeFocusItem();
        while (list && !(list->inherits("QQuickItemView") && list->isAncestorOf(item)))
            list = list->parentItem();
        const QQuickItem *before = m_window->activeFocusItem();
        press(!list ? Qt::Key_Tab : list->property("columns").toInt() > 1 ? Qt::Key_Right : Qt::Key_Down);
        // A web page passes the focus on in its own time.
        (void)QTest::qWaitFor([&] { return m_window->activeFocusItem() != before; }, 300);
    }
    if (!guard || !isFocused())
        throw StepFailed(
            QStringLiteral("the Tab key does not lead to \"%1\"").arg(guard ? spokenName(item) : QString()));
}

void WindowDriver::tap(const QPointF &place)
{
    const QPoint point = place.toPoint();
    QTest::touchEvent(m_window, m_finger.get()).press(0, point, m_window);
    QTest::touchEvent(m_window, m_finger.get()).release(0, point, m_window);
}

void WindowDriver::doubleTap(const QPointF &place)
{
    tap(place);
    tap(place);
}

void WindowDriver::swipe(const QPointF &from, const QPointF &to)
{
    constexpr int steps = 12;
    QTest::touchEvent(m_window, m_finger.get()).press(0, from.toPoint(), m_window);
    for (int i = 1; i <= steps; ++i) {
        QTest::qWait(10);
        QTest::touchEvent(m_window, m_finger.get()).move(0, (from + (to - from) * i / steps).toPoint(), m_window);
    }
    QTest::touchEvent(m_window, m_finger.get()).release(0, to.toPoint(), m_window);
}

void WindowDriver::pinch(const QPointF &center, qreal from, qreal to)
{
    constexpr int steps = 12;
    const auto finger = [&](int side, qreal distance) { return (center + QPointF(side * distance / 2, 0)).toPoint(); };
    QTest::touchEvent(m_window, m_finger.get())
        .press(0, finger(-1, from), m_window)
        .press(1, finger(1, from), m_window);
    for (int i = 1; i <= steps; ++i) {
        const qreal distance = from + (to - from) * i / steps;
        QTest::qWait(10);
        QTest::touchEvent(m_window, m_finger.get())
            .move(0, finger(-1, distance), m_window)
            .move(1, finger(1, distance), m_window);
    }
    QTest::touchEvent(m_window, m_finger.get())
        .release(0, finger(-1, to), m_window)
        .release(1, finger(1, to), m_window);
}

void WindowDriver::press(Qt::Key key)
{
    QTest::keyClick(m_window, key);
}

QPointF WindowDriver::centerOf(const QQuickItem *item) const
{
    return item->mapToScene(item->boundingRect().center());
}

QImage WindowDriver::picture() const
{
    return m_window->grabWindow();
}

bool WindowDriver::showsPicture() const
{
    const QImage shot = picture();
    const QRect middle(shot.width() / 4, shot.height() / 3, shot.width() / 2, shot.height() / 4);
    const QRgb first = shot.pixel(middle.topLeft());
    for (int y = middle.top(); y < middle.bottom(); y += 7) {
        for (int x = middle.left(); x < middle.right(); x += 7) {
            if (std::abs(qGray(shot.pixel(x, y)) - qGray(first)) > 12)
                return true;
        }
    }
    return false;
}

void WindowDriver::settle() const
{
    // A movement that is about to begin shows the same picture twice.
    constexpr int enough = 3;
    QImage last;
    int same = 1;
    for (int i = 0; i < 50 && same < enough; ++i) {
        QImage now = picture();
        QPainter painter(&now);
        visit([&](const QQuickItem *item) {
            if (item->inherits("BrevantoHotspotView") || item->inherits("Platform::ActivityIndicator"))
                painter.fillRect(item->mapRectToScene(item->boundingRect()), Qt::black);
        });
        painter.end();
        same = now == last ? same + 1 : 1;
        last = now;
        QTest::qWait(60);
    }
}

QStringList WindowDriver::namelessControls() const
{
    QStringList nameless;
    visit([&](QQuickItem *item) {
        if (isControl(item) && item->isEnabled() && spokenName(item).isEmpty())
            nameless.append(QString::fromLatin1(item->metaObject()->className()));
    });
    return nameless;
}

QString WindowDriver::spokenName(QQuickItem *item)
{
    const QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(item);
    return spoken ? spoken->text(QAccessible::Name) : QString();
}
