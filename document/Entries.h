// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationRecords.h"
#include "document/Document.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace QvVisa {

/// The meaning of a document: the tables that the reader fills, each entry with its line. Views
/// point into the document, which must outlive this object. Lines are indexes, counted from 0.
class Entries
{
public:
    struct Alias
    {
        std::string_view resource;
        std::size_t line = 0; ///< The last line of that name, which decides.
    };

    struct Resource
    {
        std::string_view resource;
        std::size_t line = 0;
    };

    /// Empty, as the reader leaves it, for a document without the version header.
    explicit Entries(const Document& document);

    /// By upper-cased name.
    std::unordered_map<std::string, Alias> aliases;
    /// Resources without an alias, in the order of their lines; one that is listed twice is here
    /// twice.
    std::vector<Resource> resources;
    GpibPropertiesMap gpib;
    SerialPropertiesMap serial;
    std::uint16_t provider = defaultProvider;
    /// The provider line that decides; none when no valid line names one.
    std::optional<std::size_t> providerLine;
};

/// The alias of this name, in any case, as Entries has it; none when there is none. Much faster
/// than making Entries. The document has the version header.
std::optional<Entries::Alias> findAlias(const Document& document, std::string_view name);

/// Whether a reader gets the same from both, the order of the resources included.
bool haveSameMeaning(const Entries& left, const Entries& right);

} // namespace QvVisa
