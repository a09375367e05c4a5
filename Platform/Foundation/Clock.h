#pragma once

#include <QObject>

#include <chrono>
#include <functional>

namespace Platform
{

// The one source of time for delayed work and view animations.
class Clock
{
public:
    virtual ~Clock() = default;

    // The clock in use: the system's, unless a test has put its own in place.
    static Clock &current();

    // Replaces the clock; null restores the system's. The caller keeps ownership. Only while no delayed work is
    // pending.
    static void setCurrent(Clock *clock);

    // Monotonic time since an arbitrary start.
    virtual std::chrono::milliseconds now() const = 0;

    // Runs `block` once, `delay` from now, in the thread that `context` lives in. Dropped when `context` is destroyed
    // first. To be called from the thread of `context`.
    virtual void after(std::chrono::milliseconds delay, QObject *context, std::function<void()> block) = 0;
};

} // namespace Platform
