// SPDX-License-Identifier: MIT
// Makes one search with a VISA library, as any client does.
//   finder_client LIBRARY EXPRESSION [SEARCH_TIME_MS [SEARCH_KINDS]]
// Prints the resources ("- TEXT"), the most memory that the process has used, the status of
// viFindRsrc and the time of the search.

#include "visa/VisaApi.h"

#include <dlfcn.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>

namespace {

constexpr ViAttr searchTime = 0x0E5A0001;
constexpr ViAttr searchKinds = 0x0E5A0002;

template <typename Call>
Call* function(void* library, const char* name)
{
    return reinterpret_cast<Call*>(::dlsym(library, name));
}

/// As the kernel writes it, "kilobytes 3456"; empty where it does not.
std::string mostMemory()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        constexpr std::string_view name = "VmHWM:";
        if (line.compare(0, name.size(), name) == 0) {
            return "kilobytes " + std::to_string(std::atoi(line.c_str() + name.size())) + '\n';
        }
    }
    return {};
}

} // namespace

int main(int argc, char* argv[])
{
    void* const library = argc >= 3 ? ::dlopen(argv[1], RTLD_NOW) : nullptr;
    if (library == nullptr) {
        std::fprintf(stderr, "finder_client: %s\n", argc >= 3 ? ::dlerror() : "usage");
        return 2;
    }
    const auto open = function<decltype(viOpenDefaultRM)>(library, "viOpenDefaultRM");
    const auto setAttribute = function<decltype(viSetAttribute)>(library, "viSetAttribute");
    const auto find = function<decltype(viFindRsrc)>(library, "viFindRsrc");
    const auto findNext = function<decltype(viFindNext)>(library, "viFindNext");
    const auto close = function<decltype(viClose)>(library, "viClose");
    ViSession manager = VI_NULL;
    open(&manager);
    if (argc > 3) {
        setAttribute(manager, searchTime, std::strtoul(argv[3], nullptr, 10));
    }
    if (argc > 4) {
        setAttribute(manager, searchKinds, std::strtoul(argv[4], nullptr, 10));
    }
    ViFindList list = VI_NULL;
    ViUInt32 count = 0;
    std::array<ViChar, VI_FIND_BUFLEN> description{};
    const auto begin = std::chrono::steady_clock::now();
    const ViStatus status = find(manager, argv[2], &list, &count, description.data());
    const auto end = std::chrono::steady_clock::now();
    for (ViUInt32 i = 0; status >= 0 && i < count; ++i) {
        std::printf("- %s\n", description.data());
        findNext(list, description.data());
    }
    close(manager);
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(end - begin);
    std::printf("%sstatus %08X\nmilliseconds %lld\n", mostMemory().c_str(),
                static_cast<unsigned>(status), static_cast<long long>(time.count()));
    return 0;
}
