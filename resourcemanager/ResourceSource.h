// SPDX-License-Identifier: MIT
#pragma once

#include "resourcemanager/Call.h"
#include "resourcemanager/Cancellation.h"
#include "resourcemanager/SearchExpression.h"
#include "visa/ResourceName.h"
#include "visa/VisaApi.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace resourcemanager {

class Object;

/// One viFindRsrc, as a source sees it. The references are valid during the call.
struct Search
{
    /// As the client wrote it.
    const std::string& text;
    const SearchExpression& expression;
    std::chrono::steady_clock::time_point begin;
    /// The attribute QV_ATTR_SEARCH_TIME; nothing when the client has not set it.
    std::optional<std::chrono::milliseconds> searchTime;
    /// The attribute QV_ATTR_SEARCH_KINDS; nothing when the client has not set it.
    std::optional<ViUInt32> searchKinds;
    /// Once cancelled, the client gets VI_ERROR_INV_OBJECT, whatever the source answers.
    const Cancellation& cancellation;

    /// When to stop: after searchTime, but not later than this long after the beginning.
    std::chrono::steady_clock::time_point deadline(std::chrono::milliseconds longest) const
    {
        return begin + std::min(longest, searchTime.value_or(longest));
    }
};

struct SearchResult
{
    /// The matching resources in the order of the list. A text of VI_FIND_BUFLEN characters or more
    /// fills the client's buffer without a terminating zero, which only a simulator wants.
    std::vector<std::string> descriptions;
    /// The count that the client is given instead of the true one. With it, a search that found
    /// nothing succeeds, with an empty description.
    std::optional<ViUInt32> count;
};

/// Where the resources of one resource manager session come from. Calls may come from several
/// threads at once, and a search from one thread must not delay the calls of others. An exception
/// becomes VI_ERROR_ALLOC or VI_ERROR_SYSTEM_ERROR.
class ResourceSource
{
public:
    virtual ~ResourceSource() = default;

    /// The attribute VI_ATTR_RSRC_MANF_NAME.
    virtual std::string manufacturerName() const = 0;

    /// Lists what matches the expression.
    virtual SearchResult search(const Search& search) = 0;

    /// What a resource string says; nothing when it is malformed.
    virtual std::optional<visa::ResourceName> parse(std::string_view text)
    {
        return visa::parseResourceName(text);
    }

    /// The alias that viParseRsrcEx gives.
    virtual std::string alias(const visa::ResourceName& /*name*/) { return {}; }

    /// Opens a session to a resource. The text is the client's, the name what parse() says. Sets
    /// instrument and answers a status; a negative one without instrument by default, since a
    /// library may list without opening.
    virtual ViStatus open(std::string_view text, const visa::ResourceName& name,
                          std::shared_ptr<Object>& instrument);

    /// Asked before each call on the session or on what was opened with it, after the handle was
    /// found to be valid. nth counts the calls of that kind from 1: on the session, or for
    /// viFindNext on its find list; the text is the expression of a viFindRsrc. A negative status
    /// is returned without any work; any other replaces success. May wait.
    virtual std::optional<ViStatus> beforeCall(Call /*call*/, std::uint32_t /*nth*/,
                                               std::string_view /*expression*/,
                                               const Cancellation& /*cancellation*/)
    {
        return std::nullopt;
    }
};

/// Each library defines these two.

/// The source of a new resource manager session (viOpenDefaultRM).
std::shared_ptr<ResourceSource> openResourceSource();

/// Asked when a call begins; when the call ends, the function gets its line (CallRecord::line()).
/// Without a function nothing is recorded.
std::function<void(const std::string& line)> callLog();

} // namespace resourcemanager
