#pragma once

#include <cstddef>

// Counts the memory that the process has from malloc and its kin, from all libraries, beyond what it had at start().
class HeapMeter
{
public:
    HeapMeter() = delete;

    static void start();
    // The most that was in use at a time since start().
    static std::ptrdiff_t peak();
};
