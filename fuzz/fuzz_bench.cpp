// SPDX-License-Identifier: MIT
// A bench file, the resource strings in it, and its lines as search expressions.
#include "fuzz/Judgement.h"
#include "resourcemanager/SearchExpression.h"
#include "simulator/BenchFile.h"
#include "visa/ResourceName.h"

#include <algorithm>
#include <string>
#include <string_view>

using resourcemanager::SearchExpression;
using simulator::Bench;
using simulator::BenchFile;
using simulator::BenchResource;

namespace {

/// The time is a product of these and the size of the input.
constexpr std::size_t longestText = 64;
constexpr std::size_t mostResources = 20;

void requireSensibleName(std::string_view text)
{
    visa::ResourceFault fault;
    const auto name = visa::parseResourceName(text, &fault);
    if (!name) {
        require(fault.column + fault.length <= text.size(), "a fault outside the text");
        return;
    }
    const auto again = visa::parseResourceName(name->fullName);
    require(again.has_value(), "a normal form that is no resource string");
    require(again->fullName == name->fullName, "a normal form that is not normal");
    require(again->key() == name->key(), "two keys for one resource");
    require(again->interfaceType == name->interfaceType &&
                again->interfaceNumber == name->interfaceNumber,
            "another interface in the normal form");
}

void requireSensibleExpression(std::string_view text)
{
    const auto expression = SearchExpression::compile(text);
    if (expression && expression->matches(text)) {
        for (std::size_t length = 0; length <= text.size(); ++length) {
            require(expression->canMatchPrefix(text.substr(0, length)),
                    "a match without its prefix");
        }
    }
}

void requireFound(const Bench& bench, const BenchResource& resource, std::uint32_t number)
{
    const std::string text = resource.numbered(number);
    require(text.size() <= VI_FIND_BUFLEN, "a description longer than the client's buffer");
    const BenchResource* const found = bench.find(text);
    require(found != nullptr, "a listed resource cannot be opened");
    require(found <= &resource, "a later resource was found");
    requireSensibleName(text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = asText(data, size);
    const BenchFile file = BenchFile::parse(text, "/bench/");
    const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
    std::size_t last = 0;
    for (const BenchFile::Message& message : file.messages()) {
        require(message.line > last && message.line <= lines, "a message about no line");
        last = message.line;
    }
    const auto& resources = file.bench().resources();
    for (std::size_t i = 0; i < std::min(resources.size(), mostResources); ++i) {
        const BenchResource& resource = resources[i];
        requireFound(file.bench(), resource, 1);
        requireFound(file.bench(), resource, resource.size() / 2 + 1);
        requireFound(file.bench(), resource, resource.size());
    }
    for (std::string_view rest = text; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        requireSensibleName(line);
        requireSensibleExpression(line.substr(0, longestText));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    }
    return 0;
}
