// SPDX-License-Identifier: MIT
// Searches with a VISA library from several threads at once, some of which close their manager
// meanwhile: for the thread sanitizer.
//   threaded_client LIBRARY COUNT
// Ends with 1 unless every search finds so many resources or was ended by the close.

#include "visa/VisaApi.h"

#include <dlfcn.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

namespace {

template <typename Call>
Call* function(void* library, const char* name)
{
    return reinterpret_cast<Call*>(::dlsym(library, name));
}

struct Calls
{
    explicit Calls(void* library)
        : open(function<decltype(viOpenDefaultRM)>(library, "viOpenDefaultRM")),
          find(function<decltype(viFindRsrc)>(library, "viFindRsrc")),
          findNext(function<decltype(viFindNext)>(library, "viFindNext")),
          close(function<decltype(viClose)>(library, "viClose"))
    {}

    decltype(viOpenDefaultRM)* open;
    decltype(viFindRsrc)* find;
    decltype(viFindNext)* findNext;
    decltype(viClose)* close;
};

/// The resources that a search finds, -1 when the manager was closed meanwhile, else -2.
int search(const Calls& calls, ViSession manager)
{
    ViFindList list = VI_NULL;
    ViUInt32 count = 0;
    std::array<ViChar, VI_FIND_BUFLEN> description{};
    const ViStatus status = calls.find(manager, "?*", &list, &count, description.data());
    if (status == VI_ERROR_INV_OBJECT) {
        return -1;
    }
    for (ViUInt32 i = 1; status == VI_SUCCESS && i < count; ++i) {
        if (calls.findNext(list, description.data()) == VI_ERROR_INV_OBJECT) {
            return -1;
        }
    }
    return status == VI_SUCCESS ? static_cast<int>(count) : -2;
}

} // namespace

int main(int argc, char* argv[])
{
    void* const library = argc == 3 ? ::dlopen(argv[1], RTLD_NOW) : nullptr;
    if (library == nullptr) {
        std::fprintf(stderr, "threaded_client: %s\n", argc == 3 ? ::dlerror() : "usage");
        return 2;
    }
    const Calls calls(library);
    const int expected = std::atoi(argv[2]);
    constexpr int threadCount = 6;
    std::atomic<int> faults = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        const bool isClosed = i % 3 == 0;
        threads.emplace_back([&calls, &faults, expected, isClosed] {
            ViSession manager = VI_NULL;
            calls.open(&manager);
            std::thread closer;
            if (isClosed) {
                closer = std::thread([&calls, manager] {
                    std::this_thread::sleep_for(std::chrono::milliseconds(300));
                    calls.close(manager);
                });
            }
            const int found = search(calls, manager);
            if (found != expected && !(isClosed && found == -1)) {
                std::fprintf(stderr, "threaded_client: found %d\n", found);
                ++faults;
            }
            if (isClosed) {
                closer.join();
            } else {
                calls.close(manager);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return faults == 0 ? 0 : 1;
}
