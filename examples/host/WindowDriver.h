#pragma once

#include <QImage>
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>

class QPointingDevice;

// A step that did not come about within its bound; the text says which.
struct StepFailed : std::runtime_error {
    using std::runtime_error::runtime_error;
    explicit StepFailed(const QString &what)
        : std::runtime_error(what.toStdString())
    {
    }
};

// A user of one window: sees the items on the screen, calls them by the names that assistive technology speaks, and
// works them by touch or, in the other manner, by keyboard alone.
class WindowDriver
{
public:
    enum class Manner { Touch, Keyboard };

    WindowDriver(QQuickWindow *window, Manner manner);
    ~WindowDriver();

    QQuickWindow *window() const { return m_window; }

    // Those that wait throw StepFailed with `what`, or what they waited for, when the bound passes.
    void require(const std::function<bool()> &condition, const QString &what,
                 std::chrono::milliseconds bound = std::chrono::seconds(20)) const;
    QQuickItem *requireItem(const QString &objectName) const;
    QQuickItem *requireControl(const QString &name) const;
    void requireText(const QString &text) const;

    // What is on the screen, on top of everything that covers it; null or false when it is not.
    QQuickItem *item(const QString &objectName) const;
    QQuickItem *control(const QString &name) const;
    bool showsText(const QString &text) const;
    void visit(const std::function<void(QQuickItem *)> &visitor) const;

    // Taps the control of that name, or goes to it by Tab and presses Space.
    void activate(const QString &name);
    void activate(QQuickItem *item);
    void tap(const QPointF &place);
    void doubleTap(const QPointF &place);
    void swipe(const QPointF &from, const QPointF &to);
    // Two fingers around `center`, `from` and `to` points apart.
    void pinch(const QPointF &center, qreal from, qreal to);
    void press(Qt::Key key);

    QPointF centerOf(const QQuickItem *item) const;
    QImage picture() const;
    // Whether the middle of the window is more than one colour.
    bool showsPicture() const;
    // Waits until transitions are over: pictures stay the same, beside what moves for good.
    void settle() const;

    // Controls on the screen that assistive technology cannot call by a name.
    QStringList namelessControls() const;

    // What assistive technology calls the item; empty when nothing.
    static QString spokenName(QQuickItem *item);

private:
    void focus(QQuickItem *item);

    QQuickWindow *m_window;
    Manner m_manner;
    std::unique_ptr<QPointingDevice> m_finger;
};
