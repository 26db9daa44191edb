// SPDX-License-Identifier: MIT
// Reads resource strings, one a line, and prints two lines for each: how PyVISA's grammar
// reads it (its canonical name, or "-"), and how the published one does (the full name, or "-" and
// the problem).

#include "visa/PyVisaResourceName.h"
#include "visa/ResourceName.h"

#include <array>
#include <iostream>
#include <string>

namespace {

/// In the order of visa::ResourceProblem.
constexpr std::array<const char*, 12> problems{
    "UnknownInterface", "TrailingWhiteSpace", "MissingPart",  "EmptyPart",
    "ExtraPart",        "UnknownClass",       "NotANumber",   "OutOfRange",
    "BadHost",          "BadLanDevice",       "BadCharacter", "NotAscii"};

} // namespace

int main()
{
    std::ios::sync_with_stdio(false);
    std::string text;
    while (std::getline(std::cin, text)) {
        const visa::PyVisaResourceName pyVisa = visa::PyVisaResourceName::parse(text);
        visa::ResourceFault fault;
        const auto name = visa::parseResourceName(text, &fault);
        std::cout << (pyVisa.isAccepted() ? pyVisa.canonicalName() : "-") << '\n'
                  << (name
                          ? name->fullName
                          : std::string("-") + problems.at(static_cast<std::size_t>(fault.problem)))
                  << '\n';
    }
}
