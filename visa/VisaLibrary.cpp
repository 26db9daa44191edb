// SPDX-License-Identifier: MIT
#include "visa/VisaLibrary.h"

#include <dlfcn.h>

namespace visa {

namespace {

template <typename Call>
bool resolve(void* library, const char* name, Call& call)
{
    call = reinterpret_cast<Call>(::dlsym(library, name));
    return call != nullptr;
}

bool resolveAll(void* library, VisaLibrary::Calls& calls)
{
    return resolve(library, "viOpenDefaultRM", calls.openDefaultRM) &&
           resolve(library, "viSetAttribute", calls.setAttribute) &&
           resolve(library, "viFindRsrc", calls.findRsrc) &&
           resolve(library, "viFindNext", calls.findNext) &&
           resolve(library, "viParseRsrc", calls.parseRsrc) &&
           resolve(library, "viClose", calls.close);
}

} // namespace

const VisaLibrary& VisaLibrary::instance()
{
    static const VisaLibrary library(candidates());
    return library;
}

const std::vector<std::string>& VisaLibrary::candidates()
{
    static const std::vector<std::string> names{
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
    return names;
}

VisaLibrary::VisaLibrary(const std::vector<std::string>& candidates)
{
    for (const std::string& candidate : candidates) {
        void* library = ::dlopen(candidate.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (library == nullptr) {
            continue;
        }
        Calls calls;
        if (resolveAll(library, calls)) {
            m_calls = calls;
            m_name = candidate;
            return;
        }
        ::dlclose(library);
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

const VisaLibrary::Calls& VisaLibrary::calls() const
{
    return m_calls;
}

} // namespace visa
