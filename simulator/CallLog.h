// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/Call.h"
#include "visa/VisaApi.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace simulator {

/// One line of the log of calls:
///
///     viFindRsrc(1, "?*") -> VI_SUCCESS, list=2, count=7, description="ASRL1::INSTR"
///
/// in brackets what the client gave, then the status, then what it got, if anything. Sessions,
/// find lists, counts and values are decimal, attributes and event types 0x with eight digits. In
/// texts a quote and a \ have a \ before them, bytes beyond printable ASCII stand as \xNN; a null
/// pointer is null.
///
/// The file is the one that QVVISA_BENCH_LOG names when the call begins; without it, nothing is
/// written. The line is appended, in one piece, when the call ends.
class CallLog
{
public:
    explicit CallLog(Call call);

    void argument(std::uint64_t number);
    void hexArgument(ViUInt32 number);
    void textArgument(std::string_view text);
    /// The pointer may be null.
    void textArgument(const char* text);
    void nullArgument();

    void result(std::string_view name, std::uint64_t number);
    void result(std::string_view name, std::string_view text);

    /// Writes the line.
    void finish(ViStatus status) const;

private:
    void addArgument(const std::string& text);

    std::string m_path;
    std::string m_arguments;
    std::string m_results;
    Call m_call;
};

} // namespace simulator
