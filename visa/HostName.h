// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace visa {

/// Whether the text is a host name: labels of at most 63 letters, digits, hyphens and underscores,
/// together at most 253 characters; one dot may end it.
bool isHostName(std::string_view text);

/// An IPv6 address in brackets, possibly with a zone as in [fe80::1%eth0], in its shortest form;
/// nothing for any other text. The bytes of the zone are copied; it has no space and no bracket.
std::optional<std::string> normalIpv6(std::string_view text);

} // namespace visa
