// SPDX-License-Identifier: MIT
#pragma once

#include "visa/LibraryProbe.h"
#include "visa/ProbeRecord.h"

#include <optional>
#include <string>
#include <string_view>

namespace visa {

/// Makes a report of the child's records. Records in any order and with any numbers are taken, in
/// bounded memory.
class ProbeReportBuilder
{
public:
    void take(ProbeRecord record);

    /// How the child says that it ends; nothing until it does.
    const std::optional<ProbeEnd>& end() const { return m_end; }

    /// What the library printed.
    void takeOutput(std::string_view bytes);

    /// The report so far. The builder is empty then.
    ProbeReport finish(ProbeEnd end);

private:
    void beginCall(std::string name);
    void endCall(const ProbeRecord& record, bool hasThrown);
    void takeLoading(ProbeRecord& record);
    void takeFound(ProbeRecord& record);
    void takeAnswer(ProbeRecord& record);

    ProbeReport m_report;
    std::optional<ProbeEnd> m_end;
};

} // namespace visa
