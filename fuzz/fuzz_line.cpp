// SPDX-License-Identifier: MIT
// One line, against the format's regular expressions.

#include "config/ConfigurationLine.h"
#include "fuzz/Judgement.h"
#include "tests/config/OracleReader.h"

#include <algorithm>
#include <functional>

using QvVisa::ConfigurationLine;
using QvVisa::LineKind;

namespace {

bool liesWithin(std::string_view part, std::string_view line)
{
    const std::less_equal<const char*> notBehind;
    return notBehind(line.data(), part.data()) &&
           notBehind(part.data() + part.size(), line.data() + line.size());
}

bool isNumber(std::string_view text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

bool isWord(std::string_view text)
{
    return !text.empty() && text.find_first_of(" \t\n\v\f\r") == std::string_view::npos;
}

void requireSense(const ConfigurationLine& found, std::string_view line)
{
    switch (found.kind) {
    case LineKind::None:
        require(found.first.empty() && found.second.empty(), "a line of no kind has texts");
        return;
    case LineKind::Provider:
        require(isNumber(found.first) && found.second.empty(), "a provider that is no number");
        break;
    case LineKind::Resource:
        require(found.first == line && found.second.empty(), "a resource is not the whole line");
        require(line.find('=') == std::string_view::npos, "a resource with an equals sign");
        break;
    case LineKind::Alias:
        require(isWord(found.first) && isWord(found.second), "an alias with white space");
        require(found.first.find('=') == std::string_view::npos, "a name with an equals sign");
        require(liesWithin(found.second, line), "a text from outside the line");
        break;
    default:
        require(isNumber(found.first) && isNumber(found.second), "a property without its numbers");
        require(liesWithin(found.second, line), "a text from outside the line");
        break;
    }
    require(liesWithin(found.first, line), "a text from outside the line");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // A line is what stands before a line feed. On the heap, so that a read past its end shows.
    const std::string_view text = asText(data, size);
    const std::vector<char> bytes(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(std::min(
                                                                   text.find('\n'), text.size())));
    const std::string_view line(bytes.data(), bytes.size());
    const ConfigurationLine found = QvVisa::matchConfigurationLine(line);
    requireSense(found, line);
    if (isShortLine(line)) {
        const ConfigurationLine expected = matchWithExpressions(line);
        require(found.kind == expected.kind, "another kind than the expressions say");
        require(found.first == expected.first, "another first text than the expressions say");
        require(found.second == expected.second, "another second text than the expressions say");
    }
    return 0;
}
