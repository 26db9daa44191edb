// SPDX-License-Identifier: MIT
// Reads resource strings, one a line, and prints for each how PyVISA's grammar reads it: its
// canonical name, or "-".

#include "visa/PyVisaResourceName.h"

#include <iostream>
#include <string>

int main()
{
    std::ios::sync_with_stdio(false);
    std::string text;
    while (std::getline(std::cin, text)) {
        const visa::PyVisaResourceName name = visa::PyVisaResourceName::parse(text);
        std::cout << (name.isAccepted() ? name.canonicalName() : "-") << '\n';
    }
}
