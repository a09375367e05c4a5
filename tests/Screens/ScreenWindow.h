#pragma once

#include "Platform/Interface/NavigationController.h"

#include <QImage>
#include <QPointingDevice>
#include <QQuickWindow>

#include <memory>

// A host's window, with SDK screens over it and a finger on it.
class ScreenWindow
{
public:
    explicit ScreenWindow(const QSize &size = {390, 844});
    ~ScreenWindow();

    QQuickWindow *window() { return &m_window; }
    QPointingDevice *finger() const { return m_finger.get(); }

    // Presents a navigation stack whose first screen is an empty one and pushes `screen` onto it; returns the stack
    // when the screen has appeared.
    Platform::NavigationController *push(std::unique_ptr<Platform::ViewController> screen);

    void tap(const QPointF &inWindow);
    void tap(const QQuickItem *item);
    // A quick stroke of the finger, from one point to another.
    void fling(const QPoint &from, const QPoint &to);

    // What the user sees. Saved under `name` too when BREVANTO_SCREENSHOTS names a folder.
    QImage grab(const QString &name = {});

private:
    QQuickWindow m_window;
    std::unique_ptr<QPointingDevice> m_finger;
};
