// SPDX-License-Identifier: MIT
#pragma once

#include "visa/VisaApi.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace resourcemanager {

/// Writes a text and its terminating zero into a client's buffer of VI_FIND_BUFLEN characters; a
/// longer text is cut.
inline void copyText(std::string_view text, ViChar* buffer)
{
    const std::size_t length = std::min(text.size(), static_cast<std::size_t>(VI_FIND_BUFLEN) - 1);
    std::copy_n(text.data(), length, buffer);
    buffer[length] = '\0';
}

/// The same for what a search found, see SearchResult::descriptions.
inline void copyDescription(std::string_view text, ViChar* buffer)
{
    if (text.size() < VI_FIND_BUFLEN) {
        copyText(text, buffer);
    } else {
        std::copy_n(text.data(), VI_FIND_BUFLEN, buffer);
    }
}

} // namespace resourcemanager
