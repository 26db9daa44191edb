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
        : VisaClient({symbol("viOpenDefaultRM"), symbol("viFindRsrc"), symbol("viFindNext"),
                      symbol("viParseRsrc"), symbol("viParseRsrcEx"), symbol("viOpen"),
                      symbol("viClose"), symbol("viSetAttribute"), symbol("viGetAttribute"),
                      symbol("viStatusDesc"), symbol("viWrite"), symbol("viRead"),
                      symbol("viDisableEvent"), symbol("viDiscardEvents")})
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
    /// The address of a function of any type.
    struct Symbol
    {
        template <typename Function>
        operator Function*() const // NOLINT(google-explicit-constructor,hicpp-explicit-conversions)
        {
            return reinterpret_cast<Function*>(address);
        }
        void* address;
    };

    static Symbol symbol(const char* name)
    {
        void* const library = ::dlopen(QVVISA_SIMULATOR_LIBRARY, RTLD_NOW | RTLD_LOCAL);
        void* const address = library != nullptr ? ::dlsym(library, name) : nullptr;
        if (address == nullptr) {
            throw std::runtime_error(std::string("no ") + name + " in " QVVISA_SIMULATOR_LIBRARY);
        }
        return {address};
    }
};
