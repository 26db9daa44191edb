// SPDX-License-Identifier: MIT
#include "visa/ProbeReportPipe.h"

#include "visa/ProbeChild.h"

#include <cerrno>

#include <unistd.h>

namespace visa {

ProbeReportPipe::ProbeReportPipe(int descriptor) : m_descriptor(descriptor), m_process(::getpid())
{}

void ProbeReportPipe::add(ProbeRecordKind kind, std::string_view text, std::int64_t first,
                          std::int64_t second)
{
    m_pending += encodeProbeRecord(kind, text, first, second);
}

void ProbeReportPipe::flush()
{
    if (!isOwnProcess()) {
        ::_exit(0);
    }
    std::string_view left = m_pending;
    while (!left.empty()) {
        const ssize_t written = ::write(m_descriptor, left.data(), left.size());
        if (written >= 0) {
            left.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            ::_exit(probeLostReport);
        }
    }
    m_pending.clear();
}

bool ProbeReportPipe::isOwnProcess() const
{
    return ::getpid() == m_process;
}

} // namespace visa
