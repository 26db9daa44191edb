// SPDX-License-Identifier: MIT
#pragma once

#include "resourcemanager/VisaCalls.h"

#include <stdexcept>
#include <string>

#include <dlfcn.h>

/// The built library as a client sees it: loaded by its path, each call looked up by name. Stays
/// loaded to the end of the process.
class LoadedLibrary
{
public:
    static const LoadedLibrary& instance()
    {
        static const LoadedLibrary library;
        return library;
    }

    decltype(&::viOpenDefaultRM) openDefaultRM =
        resolve<decltype(&::viOpenDefaultRM)>("viOpenDefaultRM");
    decltype(&::viFindRsrc) findRsrc = resolve<decltype(&::viFindRsrc)>("viFindRsrc");
    decltype(&::viFindNext) findNext = resolve<decltype(&::viFindNext)>("viFindNext");
    decltype(&::viParseRsrc) parseRsrc = resolve<decltype(&::viParseRsrc)>("viParseRsrc");
    decltype(&::viParseRsrcEx) parseRsrcEx = resolve<decltype(&::viParseRsrcEx)>("viParseRsrcEx");
    decltype(&::viOpen) open = resolve<decltype(&::viOpen)>("viOpen");
    decltype(&::viClose) close = resolve<decltype(&::viClose)>("viClose");
    decltype(&::viSetAttribute) setAttribute =
        resolve<decltype(&::viSetAttribute)>("viSetAttribute");
    decltype(&::viGetAttribute) getAttribute =
        resolve<decltype(&::viGetAttribute)>("viGetAttribute");
    decltype(&::viWrite) write = resolve<decltype(&::viWrite)>("viWrite");
    decltype(&::viRead) read = resolve<decltype(&::viRead)>("viRead");
    decltype(&::viDisableEvent) disableEvent =
        resolve<decltype(&::viDisableEvent)>("viDisableEvent");
    decltype(&::viDiscardEvents) discardEvents =
        resolve<decltype(&::viDiscardEvents)>("viDiscardEvents");

private:
    LoadedLibrary() = default;

    template <typename Function>
    Function resolve(const char* name)
    {
        void* const library = ::dlopen(QVVISA_SIMULATOR_LIBRARY, RTLD_NOW | RTLD_LOCAL);
        void* const symbol = library != nullptr ? ::dlsym(library, name) : nullptr;
        if (symbol == nullptr) {
            throw std::runtime_error(std::string("no ") + name + " in " QVVISA_SIMULATOR_LIBRARY);
        }
        return reinterpret_cast<Function>(symbol);
    }
};
