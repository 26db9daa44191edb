// SPDX-License-Identifier: MIT
#include "visa/PyVisaResourceName.h"

#include "visa/Text.h"

namespace visa {

namespace {

constexpr std::size_t s_mostFields = 5;

/// The parts of one pair of interface and class. A field without a default is mandatory; the first
/// one always has a default.
struct PyVisaForm
{
    std::string_view interfaceName;
    std::string_view resourceClass;
    /// Used where the text names no class.
    bool isDefaultClass;
    std::size_t fieldCount;
    std::array<std::string_view, s_mostFields> defaults;
};

constexpr std::array<PyVisaForm, 13> s_pyVisaForms{{
    {"GPIB", "INSTR", true, 3, {"0", "", "0"}},
    {"GPIB", "INTFC", false, 1, {"0"}},
    {"ASRL", "INSTR", true, 1, {"0"}},
    {"TCPIP", "INSTR", true, 3, {"0", "", "inst0"}},
    {"TCPIP", "SOCKET", false, 3, {"0", "", ""}},
    {"USB", "INSTR", true, 5, {"0", "", "", "", "0"}},
    {"USB", "RAW", false, 5, {"0", "", "", "", "0"}},
    {"PXI", "BACKPLANE", false, 2, {"0", ""}},
    {"PXI", "MEMACC", false, 1, {"0"}},
    {"VXI", "BACKPLANE", false, 2, {"0", ""}},
    {"VXI", "INSTR", true, 2, {"0", ""}},
    {"VXI", "MEMACC", false, 1, {"0"}},
    {"VXI", "SERVANT", false, 1, {"0"}},
}};

std::string_view interfaceOf(std::string_view text)
{
    for (const PyVisaForm& form : s_pyVisaForms) {
        if (startsWithIgnoringCase(text, form.interfaceName)) {
            return form.interfaceName;
        }
    }
    return {};
}

/// The form that the last part names, else the interface's default one, else null.
const PyVisaForm* formOf(std::string_view interfaceName, std::string_view lastPart)
{
    const PyVisaForm* found = nullptr;
    for (const PyVisaForm& form : s_pyVisaForms) {
        if (form.interfaceName != interfaceName) {
            continue;
        }
        if (form.resourceClass == lastPart) {
            return &form;
        }
        if (form.isDefaultClass) {
            found = &form;
        }
    }
    return found;
}

/// The first parts of a text; count goes on where the array is full.
struct Parts
{
    std::array<std::string_view, s_mostFields + 1> texts;
    std::size_t count = 0;
    std::string_view last;

    explicit Parts(std::string_view text)
    {
        for (std::size_t begin = 0;;) {
            const std::size_t end = text.find("::", begin);
            last = text.substr(begin, end == std::string_view::npos ? end : end - begin);
            if (count < texts.size()) {
                texts[count] = last;
            }
            ++count;
            if (end == std::string_view::npos) {
                return;
            }
            begin = end + 2;
        }
    }
};

std::size_t optionalFieldsOf(const PyVisaForm& form)
{
    std::size_t count = 0;
    for (std::size_t i = 0; i < form.fieldCount; ++i) {
        count += form.defaults[i].empty() ? 0 : 1;
    }
    return count;
}

/// Gives each field its part. While there are fewer parts than fields, an optional field takes its
/// default.
PyVisaRefusal fill(PyVisaResourceName& name, const PyVisaForm& form, const Parts& parts,
                   std::size_t count)
{
    if (count > form.fieldCount) {
        return PyVisaRefusal::TooManyParts;
    }
    // PyVISA counts the optional fields here, not the mandatory ones.
    if (count < optionalFieldsOf(form)) {
        return PyVisaRefusal::TooFewParts;
    }
    name.fields[0] = parts.texts[0].empty() ? form.defaults[0] : parts.texts[0];
    std::size_t next = 1;
    for (std::size_t field = 1; field < form.fieldCount; ++field) {
        const bool isShort = count - next < form.fieldCount - field;
        if (isShort && !form.defaults[field].empty()) {
            name.fields[field] = form.defaults[field];
            continue;
        }
        if (next == count) {
            return PyVisaRefusal::TooFewParts;
        }
        name.fields[field] = parts.texts[next++];
        if (name.fields[field].empty()) {
            return PyVisaRefusal::EmptyPart;
        }
    }
    name.fieldCount = form.fieldCount;
    return PyVisaRefusal::None;
}

} // namespace

PyVisaResourceName PyVisaResourceName::parse(std::string_view text) noexcept
{
    PyVisaResourceName name;
    name.interfaceName = interfaceOf(text);
    if (name.interfaceName.empty()) {
        name.refusal = PyVisaRefusal::UnknownInterface;
        return name;
    }
    text.remove_prefix(name.interfaceName.size());
    const Parts parts(text);
    const PyVisaForm* const form = formOf(name.interfaceName, parts.last);
    if (form == nullptr) {
        name.refusal = PyVisaRefusal::NoDefaultClass;
        return name;
    }
    name.resourceClass = form->resourceClass;
    const bool isClassWritten = parts.last == form->resourceClass;
    // A bare interface name has no parts at all, not one empty part.
    const std::size_t count = text.empty() ? 0 : parts.count - (isClassWritten ? 1 : 0);
    name.refusal = fill(name, *form, parts, count);
    return name;
}

std::string PyVisaResourceName::canonicalName() const
{
    if (!isAccepted()) {
        return {};
    }
    std::string text(interfaceName);
    for (std::size_t i = 0; i < fieldCount; ++i) {
        text.append(i > 0 ? "::" : "").append(fields[i]);
    }
    return text.append("::").append(resourceClass);
}

const char* describeRefusal(PyVisaRefusal refusal) noexcept
{
    switch (refusal) {
    case PyVisaRefusal::None:
        break;
    case PyVisaRefusal::UnknownInterface:
        return "it does not know this interface";
    case PyVisaRefusal::NoDefaultClass:
        return "the text names no class that it knows for this interface";
    case PyVisaRefusal::TooFewParts:
        return "parts are missing";
    case PyVisaRefusal::TooManyParts:
        return "there are more parts than it expects";
    case PyVisaRefusal::EmptyPart:
        return "a part is empty";
    }
    return "";
}

} // namespace visa
