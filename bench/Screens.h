#pragma once

#include "ScreenWindow.h"

#include "Brevanto/BrevantoBundle.h"

#include <QElapsedTimer>
#include <QTest>

#include <atomic>

// Notes when a window has first shown something.
class FirstFrame
{
public:
    // `isShown` is asked while a frame is handed to the renderer, which is when items may be looked at from its thread.
    FirstFrame(QQuickWindow *window, std::function<bool()> isShown)
    {
        QObject::connect(
            window, &QQuickWindow::beforeSynchronizing, &m_context,
            [this, isShown = std::move(isShown)] { m_isHandedOver = m_isHandedOver || isShown(); },
            Qt::DirectConnection);
        QObject::connect(
            window, &QQuickWindow::frameSwapped, &m_context,
            [this] {
                if (m_isHandedOver && m_seconds == 0)
                    m_seconds = m_clock.nsecsElapsed() * 1e-9;
            },
            Qt::DirectConnection);
        m_clock.start();
    }

    // How long it took since the object was made. Ends the program when it does not come.
    double wait()
    {
        if (!QTest::qWaitFor([this] { return m_seconds > 0; }, 20'000))
            qFatal("The window does not show what is waited for");
        m_context.disconnect();
        return m_seconds;
    }

private:
    QObject m_context;
    QElapsedTimer m_clock;
    std::atomic_bool m_isHandedOver = false;
    std::atomic<double> m_seconds = 0;
};

// Whether some of the item is within its window.
inline bool isInSight(const QQuickItem *item)
{
    const QRectF place = item->mapRectToScene(item->boundingRect());
    return item->isVisible() && place.intersects(QRectF(QPointF(0, 0), item->window()->size()));
}
