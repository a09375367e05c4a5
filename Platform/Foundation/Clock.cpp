#include "Platform/Foundation/Clock.h"

#include <QTimer>

#include <atomic>

namespace Platform
{

namespace
{

class SystemClock final : public Clock
{
public:
    std::chrono::milliseconds now() const override
    {
        return std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::steady_clock::now().time_since_epoch());
    }

    void after(std::chrono::milliseconds delay, QObject *context, std::function<void()> block) override
    {
        QTimer::singleShot(delay, Qt::PreciseTimer, context, std::move(block));
    }
};

std::atomic<Clock *> replacement = nullptr;

} // namespace

Clock &Clock::current()
{
    static auto &systemClock = *new SystemClock; // threads may still ask for the time while the process ends
    Clock *clock = replacement.load();
    return clock ? *clock : systemClock;
}

void Clock::setCurrent(Clock *clock)
{
    replacement.store(clock);
}

} // namespace Platform
