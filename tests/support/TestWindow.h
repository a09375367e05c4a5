#pragma once

#include "Platform/Interface/Window.h"

#include <QImage>
#include <QPointingDevice>
#include <QQuickWindow>

#include <functional>
#include <memory>

// A host's window with a finger on it and one button of the host's, over the whole window.
class TestWindow
{
public:
    explicit TestWindow(const QSize &size = {375, 667});
    ~TestWindow();

    QQuickWindow *window() const { return m_window.get(); }
    Platform::Window *platform() const { return Platform::Window::of(m_window.get()); }
    Platform::ViewController *root() const { return platform()->rootViewController(); }
    // Closes and deletes the window.
    void close();

    QPointingDevice *finger() const { return m_finger.get(); }
    void tap(const QPointF &inWindow);
    void tap(const QQuickItem *item);
    // A quick stroke of the finger, from one point to another.
    void fling(const QPoint &from, const QPoint &to);
    // Two fingers beside each other that move from one distance from the middle to another.
    void pinch(const QPoint &middle, int from, int to);

    // The host's item has the focus at first; how many touches, clicks and keys reached it.
    QQuickItem *hostItem() const;
    int hostEvents() const;

    // The item of that objectName anywhere in sight, popups included; null when there is none.
    QQuickItem *find(const QString &objectName) const;
    // The first visible item of which `predicate` says so.
    QQuickItem *find(const std::function<bool(QQuickItem *)> &predicate) const;
    // What the user sees. Saved under `name` too when BREVANTO_SCREENSHOTS names a folder.
    QImage grab(const QString &name = {}) const;

private:
    std::unique_ptr<QQuickWindow> m_window;
    std::unique_ptr<QPointingDevice> m_finger;
};
