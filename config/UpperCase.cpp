// SPDX-License-Identifier: MIT
#include "config/UpperCase.h"

#include <algorithm>
#include <cctype>

namespace QvVisa {

namespace {

char toUpperCase(char c)
{
    return static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}

} // namespace

std::string toUpperCase(std::string_view text)
{
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](char c) { return toUpperCase(c); });
    return upper;
}

bool equalsIgnoringCase(std::string_view left, std::string_view right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return a == b || toUpperCase(a) == toUpperCase(b); });
}

} // namespace QvVisa
