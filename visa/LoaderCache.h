// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace visa {

/// The paths that a cache of glibc's dynamic loader (/etc/ld.so.cache) has for a library's name, in
/// its order. Any bytes may be in it; nothing is found in those that are no cache.
///
/// The file is read rather than the output of `ldconfig -p`, since it is what the loader itself
/// reads, and since ldconfig is outside the search path of most users and missing on some machines.
std::vector<std::string> pathsInLoaderCache(std::string_view cache, std::string_view name);

} // namespace visa
