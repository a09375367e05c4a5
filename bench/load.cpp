// load LIBRARY MODULE...: how long it takes to load the library once the modules have been loaded, in nanoseconds.

#include <chrono>
#include <cstdio>
#include <dlfcn.h>

int main(int argc, char **argv)
{
    for (int module = 2; module < argc; ++module) {
        if (!dlopen(argv[module], RTLD_NOW | RTLD_GLOBAL)) {
            std::fprintf(stderr, "%s\n", dlerror());
            return 1;
        }
    }
    const auto begin = std::chrono::steady_clock::now();
    if (argc < 2 || !dlopen(argv[1], RTLD_NOW)) {
        std::fprintf(stderr, "%s\n", argc < 2 ? "no library named" : dlerror());
        return 1;
    }
    std::printf("%lld\n", static_cast<long long>((std::chrono::steady_clock::now() - begin).count()));
    return 0;
}
