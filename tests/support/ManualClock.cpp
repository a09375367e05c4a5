#include "support/ManualClock.h"

#include <QCoreApplication>
#include <QMutexLocker>
#include <QThread>

ManualClock::ManualClock()
{
    Platform::Clock::setCurrent(this);
}

ManualClock::~ManualClock()
{
    Platform::Clock::setCurrent(nullptr);
}

std::chrono::milliseconds ManualClock::now() const
{
    const QMutexLocker lock(&m_mutex);
    ++m_readCount;
    return m_now;
}

void ManualClock::after(std::chrono::milliseconds delay, QObject *context, std::function<void()> block)
{
    const QMutexLocker lock(&m_mutex);
    m_entries.insert(
        {m_now + delay, {QThread::currentThread(), QAbstractEventDispatcher::instance(), context, std::move(block)}});
}

void ManualClock::advance(std::chrono::milliseconds duration)
{
    const auto end = now() + duration;
    for (;;) {
        Entry due;
        {
            const QMutexLocker lock(&m_mutex);
            const auto first = m_entries.begin();
            if (first == m_entries.end() || first->first > end) {
                m_now = end;
                return;
            }
            m_now = first->first;
            due = std::move(first->second);
            m_entries.erase(first);
        }
        const auto run = [context = due.context, block = std::move(due.block)] {
            if (context)
                block();
        };
        if (due.thread == QThread::currentThread())
            run();
        else if (due.events)
            QMetaObject::invokeMethod(due.events, run, Qt::QueuedConnection);
    }
}

void ManualClock::pass(std::chrono::milliseconds duration)
{
    advance(duration);
    for (int i = 0; i < 4; ++i)
        QCoreApplication::processEvents();
}

int ManualClock::pendingCount() const
{
    const QMutexLocker lock(&m_mutex);
    return static_cast<int>(std::count_if(m_entries.begin(), m_entries.end(),
                                          [](const auto &entry) { return !entry.second.context.isNull(); }));
}

int ManualClock::readCount() const
{
    const QMutexLocker lock(&m_mutex);
    return m_readCount;
}
