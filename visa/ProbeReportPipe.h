// SPDX-License-Identifier: MIT
#pragma once

#include "visa/LibraryProbe.h"
#include "visa/NoExceptions.h"
#include "visa/ProbeRecord.h"

#include <chrono>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace visa {

/// The probe's child writes its report here. Only the process that made the object writes: a
/// process that the library forked ends when it comes back here.
class ProbeReportPipe
{
public:
    explicit ProbeReportPipe(int descriptor);

    /// Keeps a record until the next flush().
    void add(ProbeRecordKind kind, std::string_view text = {}, std::int64_t first = 0,
             std::int64_t second = 0);

    /// Writes what add() kept. Ends the process with probeLostReport when that fails.
    void flush();

    /// Makes a call of the library, ViStatus body(): announces it before and keeps its answer after
    /// it, to be written with whatever comes next.
    template <typename Body>
    ViStatus call(std::string_view name, Body body)
    {
        add(ProbeRecordKind::CallBegins, name);
        flush();
        bool hasReturned = false;
        const auto begin = std::chrono::steady_clock::now();
        const ViStatus status = withoutExceptions([&] {
            const ViStatus answer = body();
            hasReturned = true;
            return answer;
        });
        const std::chrono::nanoseconds duration = std::chrono::steady_clock::now() - begin;
        add(hasReturned ? ProbeRecordKind::CallReturns : ProbeRecordKind::CallThrows, {}, status,
            duration.count());
        return status;
    }

    /// False in a process that the library forked.
    bool isOwnProcess() const;

private:
    const int m_descriptor;
    const pid_t m_process;
    std::string m_pending;
};

} // namespace visa
