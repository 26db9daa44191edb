// SPDX-License-Identifier: MIT
#include "visa/VisaLibrary.h"

#include "visa/LibraryLoading.h"

#include <string_view>

#include <dlfcn.h>

namespace visa {

namespace {

template <typename Call>
void resolveOne(void* library, const char* name, Call& call, std::vector<std::string>& missing)
{
    call = reinterpret_cast<Call>(::dlsym(library, name));
    if (call == nullptr) {
        missing.emplace_back(name);
    }
}

} // namespace

std::vector<std::string> VisaLibrary::resolve(void* library, Calls& calls)
{
    std::vector<std::string> missing;
    resolveOne(library, "viOpenDefaultRM", calls.openDefaultRM, missing);
    resolveOne(library, "viSetAttribute", calls.setAttribute, missing);
    resolveOne(library, "viFindRsrc", calls.findRsrc, missing);
    resolveOne(library, "viFindNext", calls.findNext, missing);
    resolveOne(library, "viParseRsrc", calls.parseRsrc, missing);
    resolveOne(library, "viClose", calls.close, missing);
    return missing;
}

const VisaLibrary& VisaLibrary::instance()
{
    static const VisaLibrary library(candidates());
    return library;
}

const std::vector<std::string>& VisaLibrary::candidates()
{
    static const std::vector<std::string> names = [] {
        std::vector<std::string> list{
#ifdef __APPLE__
            "libqvvisa.dylib",
            "/Library/Frameworks/QvVisa.framework/libqvvisa.dylib",
            "/Library/Frameworks/VISA.framework/VISA",
#else
            "libqvvisa.so",
            "libvisa.so.0",
            "libvisa.so",
#endif
        };
        constexpr std::string_view finder(QVVISA_FINDER_LIBRARY);
        if (!finder.empty()) {
            list.emplace_back(finder);
        }
        return list;
    }();
    return names;
}

VisaLibrary::VisaLibrary(const std::vector<std::string>& candidates)
{
    for (const std::string& candidate : candidates) {
        const LoadedLibrary library = loadLibrary(candidate.c_str());
        if (library.hasThrown) {
            m_statusWithout = VI_ERROR_SYSTEM_ERROR;
        }
        if (library.handle == nullptr) {
            continue;
        }
        Calls calls;
        if (resolve(library.handle, calls).empty()) {
            m_calls = calls;
            m_name = candidate;
            return;
        }
        ::dlclose(library.handle);
    }
}

bool VisaLibrary::isFound() const
{
    return !m_name.empty();
}

const std::string& VisaLibrary::name() const
{
    return m_name;
}

ViStatus VisaLibrary::statusWithout() const
{
    return m_statusWithout;
}

const VisaLibrary::Calls& VisaLibrary::calls() const
{
    return m_calls;
}

} // namespace visa
