// SPDX-License-Identifier: MIT
// Prints which VISA library a new process finds, for tests/visa/TestVisaLibrarySearch.cpp: the
// candidate's name, its file, the status of each call and what the calls wrote. With an argument,
// 24 threads make the first call at the same time.
#include "tests/support/Threads.h"
#include "visa/VisaLibrary.h"

#include <iostream>
#include <string>

#include <dlfcn.h>

namespace {

std::string fileOf(const visa::VisaLibrary& library)
{
    Dl_info info = {};
    auto* address = reinterpret_cast<void*>(library.calls().openDefaultRM);
    return address != nullptr && ::dladdr(address, &info) != 0 ? info.dli_fname : "";
}

} // namespace

int main(int argc, char* /*argv*/[])
{
    if (argc == 2) {
        support::inThreads(24, [](std::size_t) {
            ViSession session = VI_NULL;
            viOpenDefaultRM(&session);
        });
    }
    // Hangs if the thread that loaded the library still holds the loader's lock.
    ::dlclose(::dlopen(nullptr, RTLD_NOW));
    const visa::VisaLibrary& library = visa::VisaLibrary::instance();
    std::cout << "name " << library.name() << "\nfile " << fileOf(library) << '\n';

    ViSession session = 11;
    ViFindList list = 12;
    ViUInt32 matches = 13;
    ViUInt16 type = 14;
    ViUInt16 number = 15;
    ViChar description[VI_FIND_BUFLEN] = "untouched";
    std::cout << "statuses " << viOpenDefaultRM(&session) << ' ' << viSetAttribute(1, 2, 3) << ' '
              << viFindRsrc(1, "?*", &list, &matches, description) << ' '
              << viFindNext(1, description) << ' ' << viParseRsrc(1, "ASRL1", &type, &number) << ' '
              << viClose(1) << "\noutputs " << session << ' ' << list << ' ' << matches << ' '
              << type << ' ' << number << ' ' << description << '\n';
    return 0;
}
