#pragma once

#include <QObject>

#include <functional>

class QThreadPool;

namespace Platform
{

// How blocks reach other threads: through a mutex beside Qt's queues. The thread sanitizer cannot see what those
// synchronise with, because Qt is built without it.

// Runs `block` on a thread of the pool. From any thread.
void startInPool(QThreadPool &pool, std::function<void()> block);

// Runs blocks on the thread that it lives on.
class BlockReceiver : public QObject
{
public:
    using QObject::QObject;

    // Runs `block` after the events that are queued already. From any thread. Dropped when the receiver goes before.
    void post(std::function<void()> block);

protected:
    bool event(QEvent *event) override;
};

} // namespace Platform
