// SPDX-License-Identifier: MIT
#include "config/WriteSignals.h"

#include <csignal>

namespace QvVisa {

void ignoreWriteSignals()
{
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
}

} // namespace QvVisa
