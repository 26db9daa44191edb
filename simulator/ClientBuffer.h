// SPDX-License-Identifier: MIT
#pragma once

#include "visa/VisaApi.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace simulator {

/// Writes a text with its terminating zero into a client's buffer of VI_FIND_BUFLEN characters;
/// what does not fit is cut off.
inline void copyText(std::string_view text, ViChar* buffer)
{
    const std::size_t room = static_cast<std::size_t>(VI_FIND_BUFLEN) - 1;
    const std::size_t length = std::min(text.size(), room);
    std::copy_n(text.data(), length, buffer);
    buffer[length] = '\0';
}

} // namespace simulator
