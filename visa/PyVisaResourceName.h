// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace visa {

/// Why PyVISA refuses a resource string.
enum class PyVisaRefusal : std::uint8_t
{
    None,
    /// The text begins with none of the interfaces that PyVISA knows.
    UnknownInterface,
    /// The text names no class, and PyVISA has no default class for the interface (PXI).
    NoDefaultClass,
    TooFewParts,
    TooManyParts,
    EmptyPart,
};

/// How PyVISA's grammar (pyvisa.rname, version 1.11) reads a resource string. It is looser than
/// the published one, since it checks neither numbers nor hosts, and narrower: it knows the
/// interfaces GPIB, ASRL, TCPIP, USB, PXI and VXI only, and a resource class only in upper case.
struct PyVisaResourceName
{
    PyVisaRefusal refusal = PyVisaRefusal::None;
    /// In upper case; empty when unknown.
    std::string_view interfaceName;
    /// The class of the text or the default one; empty when there is none.
    std::string_view resourceClass;
    /// The fields of the form, defaults included; views into the text or into constants. Empty
    /// when refused.
    std::array<std::string_view, 5> fields;
    std::size_t fieldCount = 0;

    bool isAccepted() const { return refusal == PyVisaRefusal::None; }

    /// PyVISA's canonical name, such as "GPIB0::5::0::INSTR"; empty when refused.
    std::string canonicalName() const;

    /// Any bytes may be in the text. Time is linear in its length, nothing is allocated.
    static PyVisaResourceName parse(std::string_view text) noexcept;
};

/// A short reason that completes the sentence "PyVISA refuses it: ...".
const char* describeRefusal(PyVisaRefusal refusal) noexcept;

} // namespace visa
