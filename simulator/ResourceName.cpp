// SPDX-License-Identifier: MIT
#include "simulator/ResourceName.h"

#include "simulator/Numbers.h"
#include "simulator/VisaClientApi.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace simulator {

namespace {

struct InterfaceName
{
    const char* name;
    ViUInt16 type;
};

// A name that begins with another one stands before it.
constexpr InterfaceName interfaces[] = {
    {"GPIB-VXI", VI_INTF_GPIB_VXI}, {"GPIB", VI_INTF_GPIB}, {"VXI", VI_INTF_VXI},
    {"ASRL", VI_INTF_ASRL},         {"PXI", VI_INTF_PXI},   {"TCPIP", VI_INTF_TCPIP},
    {"USB", VI_INTF_USB},           {"RIO", VI_INTF_RIO},   {"FIREWIRE", VI_INTF_FIREWIRE},
};

/// How many parts may stand between the interface and the class.
struct Form
{
    ViUInt16 type;
    const char* resourceClass;
    std::size_t fewest;
    std::size_t most;
};

// The first form of an interface is the one without a class in the string.
constexpr Form forms[] = {
    {VI_INTF_GPIB, "INSTR", 1, 2},      {VI_INTF_GPIB, "INTFC", 0, 0},
    {VI_INTF_GPIB, "SERVANT", 0, 0},    {VI_INTF_VXI, "INSTR", 1, 1},
    {VI_INTF_VXI, "MEMACC", 0, 0},      {VI_INTF_VXI, "BACKPLANE", 0, 1},
    {VI_INTF_VXI, "SERVANT", 0, 0},     {VI_INTF_GPIB_VXI, "INSTR", 1, 1},
    {VI_INTF_GPIB_VXI, "MEMACC", 0, 0}, {VI_INTF_GPIB_VXI, "BACKPLANE", 0, 1},
    {VI_INTF_ASRL, "INSTR", 0, 0},      {VI_INTF_PXI, "INSTR", 1, 3},
    {VI_INTF_PXI, "MEMACC", 0, 0},      {VI_INTF_PXI, "BACKPLANE", 1, 1},
    {VI_INTF_TCPIP, "INSTR", 1, 2},     {VI_INTF_TCPIP, "SOCKET", 2, 2},
    {VI_INTF_TCPIP, "SERVANT", 0, 1},   {VI_INTF_USB, "INSTR", 3, 4},
    {VI_INTF_USB, "RAW", 3, 4},         {VI_INTF_RIO, "INSTR", 1, 2},
    {VI_INTF_FIREWIRE, "INSTR", 1, 3},
};

std::string join(const std::vector<std::string>& parts)
{
    std::string text = parts.front();
    for (std::size_t i = 1; i < parts.size(); ++i) {
        text += "::" + parts[i];
    }
    return text;
}

const InterfaceName* interfaceOf(const std::string& part)
{
    for (const InterfaceName& known : interfaces) {
        if (part.rfind(known.name, 0) == 0) {
            return &known;
        }
    }
    return nullptr;
}

const Form* formOf(ViUInt16 type, const std::string& resourceClass)
{
    for (const Form& form : forms) {
        if (form.type == type && (resourceClass.empty() || resourceClass == form.resourceClass)) {
            return &form;
        }
    }
    return nullptr;
}

/// Empty parts and brackets without end are in none of the forms.
bool isBroken(const std::vector<std::string>& parts)
{
    return std::any_of(parts.begin(), parts.end(), [](const std::string& part) {
        return part.empty() ||
               (part.find('[') != std::string::npos && part.find(']') == std::string::npos);
    });
}

} // namespace

std::vector<std::string> splitResource(std::string_view text)
{
    std::vector<std::string> parts(1);
    bool bracketed = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        bracketed = text[i] == '[' || (bracketed && text[i] != ']');
        if (!bracketed && text.substr(i, 2) == "::") {
            parts.emplace_back();
            ++i;
        } else {
            parts.back() += text[i];
        }
    }
    return parts;
}

std::string toUpper(std::string_view text)
{
    std::string upper(text);
    for (char& c : upper) {
        if (c >= 'a' && c <= 'z') {
            c = static_cast<char>(c - 'a' + 'A');
        }
    }
    return upper;
}

std::optional<ViUInt16> interfaceTypeFromText(std::string_view text)
{
    const std::string upper = toUpper(text);
    for (const InterfaceName& known : interfaces) {
        if (upper == known.name) {
            return known.type;
        }
    }
    const auto number = parseNumber(text, 0xFFFF);
    return number ? std::optional(static_cast<ViUInt16>(*number)) : std::nullopt;
}

std::optional<ResourceName> ResourceName::parse(std::string_view text)
{
    std::vector<std::string> parts = splitResource(text);
    const std::string head = toUpper(parts.front());
    if (isBroken(parts)) {
        return std::nullopt;
    }
    if (head == "QVIB") {
        parts.front() = head;
        return parts.size() == 2
                   ? std::optional(ResourceName{VI_INTF_TCPIP, 0, "INSTR", join(parts)})
                   : std::nullopt;
    }
    const InterfaceName* const interface = interfaceOf(head);
    if (interface == nullptr) {
        return std::nullopt;
    }
    const std::string board = head.substr(std::string_view(interface->name).size());
    const auto number = board.empty() ? 0 : parseNumber(board, 0xFFFF);
    // A hexadecimal board number is none of the published forms.
    if (!number || board.find('X') != std::string::npos) {
        return std::nullopt;
    }
    const Form* form = parts.size() > 1 ? formOf(interface->type, toUpper(parts.back())) : nullptr;
    if (form != nullptr) {
        parts.pop_back();
    } else {
        form = formOf(interface->type, {});
    }
    const std::size_t between = parts.size() - 1;
    if (between < form->fewest || between > form->most) {
        return std::nullopt;
    }
    parts.front() = interface->name + std::to_string(*number);
    parts.emplace_back(form->resourceClass);
    return ResourceName{interface->type, static_cast<ViUInt16>(*number), form->resourceClass,
                        join(parts)};
}

std::string resourceKey(std::string_view text)
{
    const std::optional<ResourceName> name = ResourceName::parse(text);
    if (!name) {
        return toUpper(text);
    }
    std::vector<std::string> parts = splitResource(toUpper(name->fullName));
    const std::size_t last = parts.size() - 2;
    const bool isDefaultDevice = name->interfaceType == VI_INTF_TCPIP &&
                                 name->resourceClass == "INSTR" && last == 2 &&
                                 parts[last] == "INST0";
    const bool isDefaultInterface =
        name->interfaceType == VI_INTF_USB && last == 4 && parts[last] == "0";
    // Some clients write "no secondary address" as 0.
    const bool isNoSecondary =
        name->interfaceType == VI_INTF_GPIB && last == 2 && parts[last] == "0";
    if (isDefaultDevice || isDefaultInterface || isNoSecondary) {
        parts.erase(parts.end() - 2);
    }
    return join(parts);
}

} // namespace simulator
