// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/BenchFixture.h"
#include "tests/support/VisaClient.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <stdexcept>
#include <string>

#include <dlfcn.h>

/// A client of the built library, loaded by its path, with a bench of its own.
class SimulatorTest : public testing::Test, public support::VisaClient
{
protected:
    SimulatorTest()
        : VisaClient({call<decltype(&::viOpenDefaultRM)>("viOpenDefaultRM"),
                      call<decltype(&::viFindRsrc)>("viFindRsrc"),
                      call<decltype(&::viFindNext)>("viFindNext"),
                      call<decltype(&::viParseRsrc)>("viParseRsrc"),
                      call<decltype(&::viParseRsrcEx)>("viParseRsrcEx"),
                      call<decltype(&::viOpen)>("viOpen"), call<decltype(&::viClose)>("viClose"),
                      call<decltype(&::viSetAttribute)>("viSetAttribute"),
                      call<decltype(&::viGetAttribute)>("viGetAttribute"),
                      call<decltype(&::viStatusDesc)>("viStatusDesc"),
                      call<decltype(&::viWrite)>("viWrite"), call<decltype(&::viRead)>("viRead"),
                      call<decltype(&::viDisableEvent)>("viDisableEvent"),
                      call<decltype(&::viDiscardEvents)>("viDiscardEvents")})
    {}

    /// No other thread reads the environment meanwhile.
    static void setVariable(const char* name, const std::string& value)
    {
        ::setenv(name, value.c_str(), 1); // NOLINT(concurrency-mt-unsafe)
    }

    /// A session to an instrument that can be opened.
    ViSession openInstrument(ViSession session, const char* resource) const
    {
        ViSession instrument = VI_NULL;
        EXPECT_EQ(open(session, resource, instrument), "VI_SUCCESS");
        return instrument;
    }

    support::BenchFixture bench;

private:
    template <typename Function>
    static Function call(const char* name)
    {
        void* const library = ::dlopen(QVVISA_SIMULATOR_LIBRARY, RTLD_NOW | RTLD_LOCAL);
        void* const symbol = library != nullptr ? ::dlsym(library, name) : nullptr;
        if (symbol == nullptr) {
            throw std::runtime_error(std::string("no ") + name + " in " QVVISA_SIMULATOR_LIBRARY);
        }
        return reinterpret_cast<Function>(symbol);
    }
};
