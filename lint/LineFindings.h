// SPDX-License-Identifier: MIT
#pragma once

#include "lint/FindingCode.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace lint {

/// Collects the findings of one line after another.
class LineFindings
{
public:
    explicit LineFindings(std::vector<Finding>& findings) : m_findings(&findings) {}

    /// From 1. What is added from now on is about this line.
    void setLine(std::size_t line)
    {
        m_line = line;
        m_first = m_findings->size();
    }
    std::size_t line() const { return m_line; }

    /// Whether the current line has a finding.
    bool hasFinding() const { return m_findings->size() > m_first; }

    /// The offset is in bytes, from 0.
    void add(FindingCode code, std::size_t offset, std::string message)
    {
        add(code, kindOf(code).severity, offset, std::move(message));
    }
    void add(FindingCode code, Severity severity, std::size_t offset, std::string message)
    {
        m_findings->push_back({code, severity, m_line, offset + 1, std::move(message)});
    }

private:
    std::vector<Finding>* m_findings;
    std::size_t m_line = 1;
    std::size_t m_first = 0;
};

} // namespace lint
