// SPDX-License-Identifier: MIT
#pragma once

namespace visa {

/// dlopen() with immediate, local binding, for libraries whose initialisation may throw.
struct LoadedLibrary
{
    /// Null when the library could not be loaded.
    void* handle = nullptr;
    /// A C++ exception left an initialiser of the library. The library stays in memory.
    bool hasThrown = false;
};

/// Loads a library by its path, or by its name along the loader's search path. Cancelling the
/// thread passes through.
LoadedLibrary loadLibrary(const char* path);

} // namespace visa
