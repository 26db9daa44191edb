// SPDX-License-Identifier: MIT
// Matches the bytes before the first line feed, and compares with the regular expressions.

#include "config/ConfigurationLine.h"
#include "fuzz/Judgement.h"
#include "tests/support/OracleReader.h"

#include <functional>
#include <vector>

using QvVisa::ConfigurationLine;
using QvVisa::LineKind;

namespace {

void requireWithin(std::string_view part, std::string_view line)
{
    const std::less_equal<const char*> isBefore;
    require(part.empty() || (isBefore(line.data(), part.data()) &&
                             isBefore(part.data() + part.size(), line.data() + line.size())),
            "a text from outside the line");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // On the heap, where the address sanitizer sees a read past the end.
    const std::string_view text = asText(data, size);
    const std::string_view front = text.substr(0, text.find('\n'));
    const std::vector<char> bytes(front.begin(), front.end());
    const std::string_view line(bytes.data(), bytes.size());
    const ConfigurationLine found = QvVisa::matchConfigurationLine(line);
    requireWithin(found.first, line);
    requireWithin(found.second, line);
    require(found.kind == LineKind::None ? found.first.empty() : !found.first.empty(),
            "a kind without its text, or a text without its kind");
    require(found.kind != LineKind::Resource || found.first == line,
            "a resource that is not the whole line");
    if (hasOnlyShortLines(line)) {
        const ConfigurationLine expected = matchWithExpressions(line);
        require(found.kind == expected.kind, "another kind than by the expressions");
        require(found.first == expected.first, "another first text than by the expressions");
        require(found.second == expected.second, "another second text than by the expressions");
    }
    return 0;
}
