#pragma once

#include <benchmark/benchmark.h>

#include <chrono>

// Runs `work` once for each iteration and counts the time until it has its result; the result's end is not counted.
template <typename Work>
void timeResult(benchmark::State &state, Work work)
{
    for ([[maybe_unused]] auto iteration : state) {
        const auto begin = std::chrono::steady_clock::now();
        auto result = work();
        benchmark::DoNotOptimize(result);
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
    }
}

// A benchmark named "subject/who", of which timeResult() takes the time.
template <typename Work>
benchmark::internal::Benchmark *registerTimed(const std::string &name, Work work)
{
    return benchmark::RegisterBenchmark(name.c_str(), [work](benchmark::State &state) { timeResult(state, work); })
        ->UseManualTime();
}
