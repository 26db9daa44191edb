// SPDX-License-Identifier: MIT
#pragma once

#include "visa/VisaApi.h"

#include <QString>

#include <array>

namespace gui {

/// The text that a search of the VISA library reports for one resource. A library that leaves out
/// the terminating zero makes nothing read beyond its VI_FIND_BUFLEN characters.
class VisaDescription
{
public:
    /// Room for viFindRsrc and viFindNext to write VI_FIND_BUFLEN characters into.
    ViChar* buffer() { return m_characters.data(); }

    /// The text as the library gave it, always zero-terminated.
    ViConstString text() const { return m_characters.data(); }

    /// The text taken as UTF-8; what is not UTF-8 becomes replacement characters.
    QString toString() const { return QString::fromUtf8(text()); }

private:
    /// The last character is not the library's to write and stays zero.
    std::array<ViChar, VI_FIND_BUFLEN + 1> m_characters{};
};

} // namespace gui
