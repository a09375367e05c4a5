#pragma once

#include <QPointer>
#include <QString>
#include <QThreadPool>

#include <functional>
#include <memory>

namespace Platform
{

// A named queue of blocks that run on threads of its own: one at a time in order (serial), or in parallel (concurrent).
class DispatchQueue
{
public:
    enum class Kind { Serial, Concurrent };

    DispatchQueue(const QString &label, Kind kind);
    // Waits for the blocks that are running or queued.
    ~DispatchQueue();

    // A queue that several hold. The last of them may let go inside one of its blocks: what is running or queued still
    // runs, and nobody waits for it.
    static std::shared_ptr<DispatchQueue> makeShared(const QString &label, Kind kind);

    QString label() const { return m_label; }

    void async(std::function<void()> block);

    // Label of the queue whose block runs on the calling thread; empty outside any queue.
    static QString currentLabel();

    // Runs `block` on the main thread after the current event. From any thread.
    static void mainAsync(std::function<void()> block);

    // The same for work on behalf of `owner`, which lives on the main thread: dropped when `owner` is gone by then.
    static void mainAsync(const QPointer<QObject> &owner, std::function<void()> block);

private:
    Q_DISABLE_COPY_MOVE(DispatchQueue)

    QString m_label;
    QThreadPool m_pool;
};

} // namespace Platform
