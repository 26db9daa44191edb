// SPDX-License-Identifier: MIT
#pragma once

#include "visa/VisaApi.h"

#ifdef __GLIBCXX__
#include <cxxabi.h>
#endif

namespace visa {

/// Runs a body, ViStatus(). A C++ exception becomes VI_ERROR_SYSTEM_ERROR; the cancellation of the
/// thread, which glibc implements as an exception that must not be swallowed, passes through.
///
/// The object that glibc throws is foreign, so the reference to it is null.
template <typename Body>
__attribute__((no_sanitize("null"))) ViStatus withoutExceptions(Body body)
{
    try {
        return body();
    }
#ifdef __GLIBCXX__
    catch (abi::__forced_unwind&) {
        throw;
    }
#endif
    catch (...) {
        return VI_ERROR_SYSTEM_ERROR;
    }
}

} // namespace visa
