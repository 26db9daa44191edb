// SPDX-License-Identifier: MIT
// Reads resource strings, one a line, and prints two lines for each: how PyVISA's grammar
// reads it (its canonical name, or "-"), and how the published one does (the full name, or "-" and
// the problem).

#include "visa/PyVisaResourceName.h"
#include "visa/ResourceName.h"

#include <iostream>
#include <string>

namespace {

const char* problemName(visa::ResourceProblem problem)
{
    using visa::ResourceProblem;
    switch (problem) {
    case ResourceProblem::UnknownInterface:
        return "UnknownInterface";
    case ResourceProblem::TrailingWhiteSpace:
        return "TrailingWhiteSpace";
    case ResourceProblem::MissingPart:
        return "MissingPart";
    case ResourceProblem::EmptyPart:
        return "EmptyPart";
    case ResourceProblem::ExtraPart:
        return "ExtraPart";
    case ResourceProblem::UnknownClass:
        return "UnknownClass";
    case ResourceProblem::NotANumber:
        return "NotANumber";
    case ResourceProblem::OutOfRange:
        return "OutOfRange";
    case ResourceProblem::BadHost:
        return "BadHost";
    case ResourceProblem::BadLanDevice:
        return "BadLanDevice";
    case ResourceProblem::BadCharacter:
        return "BadCharacter";
    case ResourceProblem::NotAscii:
        return "NotAscii";
    }
    return "";
}

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
                  << (name ? name->fullName : std::string("-") + problemName(fault.problem))
                  << '\n';
    }
}
