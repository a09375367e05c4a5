#pragma once

#include "Platform/Foundation/Clock.h"

#include <QAbstractEventDispatcher>
#include <QMutex>
#include <QPointer>

#include <map>

// A clock that stands until the test moves it. In place from construction to destruction.
class ManualClock final : public Platform::Clock
{
public:
    ManualClock();
    ~ManualClock() override;

    std::chrono::milliseconds now() const override;
    void after(std::chrono::milliseconds delay, QObject *context, std::function<void()> block) override;

    // Moves the time and runs what falls due on the way, in order of time, what it schedules included; blocks whose
    // context lives in another thread are posted there.
    void advance(std::chrono::milliseconds duration);
    // The same, and lets what that caused happen: an animation's end may cause the next one in the event after it.
    void pass(std::chrono::milliseconds duration);

    // How much is scheduled for contexts that still live.
    int pendingCount() const;
    // How often the time has been asked for.
    int readCount() const;

private:
    struct Entry {
        QThread *thread = nullptr; // of the context
        QPointer<QAbstractEventDispatcher> events; // of that thread
        QPointer<QObject> context; // may be looked at on that thread only
        std::function<void()> block;
    };
    mutable QMutex m_mutex;
    std::chrono::milliseconds m_now{0};
    mutable int m_readCount = 0;
    std::multimap<std::chrono::milliseconds, Entry> m_entries;
};
