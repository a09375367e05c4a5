// Stands in for the C library's allocation functions, which glibc offers under a second name for this purpose.

#include "HeapMeter.h"

#include <atomic>
#include <cerrno>
#include <malloc.h>

// NOLINTBEGIN(bugprone-reserved-identifier): the C library's own names
extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
void *__libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void *block);
}
// NOLINTEND(bugprone-reserved-identifier)

namespace
{

constinit std::atomic<std::ptrdiff_t> inUse = 0;
constinit std::atomic<std::ptrdiff_t> mostInUse = 0;

void *taken(void *block)
{
    if (!block)
        return block;
    const std::ptrdiff_t now = inUse += std::ptrdiff_t(malloc_usable_size(block));
    for (std::ptrdiff_t most = mostInUse; now > most && !mostInUse.compare_exchange_weak(most, now);) { }
    return block;
}

void givenBack(void *block)
{
    if (block)
        inUse -= std::ptrdiff_t(malloc_usable_size(block));
}

} // namespace

extern "C" {

void *malloc(std::size_t size)
{
    return taken(__libc_malloc(size));
}

void *calloc(std::size_t count, std::size_t size)
{
    return taken(__libc_calloc(count, size));
}

void *realloc(void *block, std::size_t size)
{
    givenBack(block);
    return taken(__libc_realloc(block, size));
}

void *memalign(std::size_t alignment, std::size_t size)
{
    return taken(__libc_memalign(alignment, size));
}

void *aligned_alloc(std::size_t alignment, std::size_t size)
{
    return taken(__libc_memalign(alignment, size));
}

int posix_memalign(void **block, std::size_t alignment, std::size_t size)
{
    *block = taken(__libc_memalign(alignment, size));
    return *block ? 0 : ENOMEM;
}

void free(void *block)
{
    givenBack(block);
    __libc_free(block);
}
}

void HeapMeter::start()
{
    inUse = 0;
    mostInUse = 0;
}

std::ptrdiff_t HeapMeter::peak()
{
    return mostInUse;
}
