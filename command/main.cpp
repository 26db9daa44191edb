// SPDX-License-Identifier: MIT
#include "command/CommandLine.h"
#include "command/TextWrap.h"

#include <unistd.h>

#include <csignal>
#include <iostream>
#include <string>
#include <vector>

int main(int count, char** arguments)
{
    // Beyond the limit on file sizes a write fails instead of ending the program. SIGPIPE ends it
    // without a message when nobody reads its output any more.
    std::signal(SIGXFSZ, SIG_IGN);
    std::ios::sync_with_stdio(false);
    const QvVisa::Streams streams{std::cin,
                                  std::cout,
                                  std::cerr,
                                  ::isatty(STDOUT_FILENO) == 1,
                                  ::isatty(STDERR_FILENO) == 1,
                                  QvVisa::terminalWidth()};
    const std::vector<std::string> given(arguments + (count > 0 ? 1 : 0), arguments + count);
    return static_cast<int>(QvVisa::runCommandLine(given, streams));
}
