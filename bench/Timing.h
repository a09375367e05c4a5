#pragma once

#include <benchmark/benchmark.h>

#include <chrono>
#include <ctime>

inline double wallSeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// The processor's time for this thread, for work that neither waits nor shares: other programs do not count.
inline double processorSeconds()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + 1e-9 * double(time.tv_nsec);
}

// Registers the benchmark "subject/who". The time counts from the call of `work` until it calls what it is given; what
// it clears away afterwards does not count.
template <typename Work>
void registerUntilDone(const std::string &name, double (*now)(), Work work)
{
    const auto run = [now, work](benchmark::State &state) {
        for ([[maybe_unused]] auto iteration : state) {
            const double begin = now();
            work([&state, now, begin] { state.SetIterationTime(now() - begin); });
        }
    };
    benchmark::RegisterBenchmark(name.c_str(), run)->UseManualTime();
}

// The same for work that gives its result, in time by the clock on the wall.
template <typename Work>
void registerTimed(const std::string &name, Work work, double (*now)() = wallSeconds)
{
    registerUntilDone(name, now, [work](const auto &done) {
        auto result = work();
        benchmark::DoNotOptimize(result);
        done();
    });
}
