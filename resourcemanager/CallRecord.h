// SPDX-License-Identifier: MIT
#pragma once

#include "resourcemanager/Call.h"
#include "visa/VisaApi.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace resourcemanager {

/// One call in words:
///
///     viFindRsrc(1, "?*") -> VI_SUCCESS, list=2, count=7, description="ASRL1::INSTR"
///
/// In parentheses the arguments, then the status, then the results by name. Sessions, find lists,
/// counts and values are decimal, attributes and event types 0x and eight digits. In texts, quotes
/// and backslashes are preceded by a backslash, bytes outside printable ASCII are \xNN; a null
/// pointer is null.
class CallRecord
{
public:
    /// A record that is not wanted leaves out the texts, whose quoting takes time.
    CallRecord(Call call, bool isWanted) : m_call(call), m_isWanted(isWanted) {}

    void argument(std::uint64_t number);
    void hexArgument(ViUInt32 number);
    void textArgument(std::string_view text);
    /// The pointer may be null.
    void textArgument(const char* text);
    void nullArgument();

    void result(std::string_view name, std::uint64_t number);
    void result(std::string_view name, std::string_view text);

    bool isWanted() const { return m_isWanted; }

    /// With a line feed.
    std::string line(ViStatus status) const;

private:
    void addArgument(const std::string& text);

    std::string m_arguments;
    std::string m_results;
    Call m_call;
    bool m_isWanted;
};

} // namespace resourcemanager
