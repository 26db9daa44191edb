// SPDX-License-Identifier: MIT
#include "document/MergeChunks.h"

#include "document/LineMatches.h"

namespace QvVisa {

namespace {

TextLines slice(const TextLines& lines, std::size_t begin, std::size_t end)
{
    return {lines.begin() + static_cast<std::ptrdiff_t>(begin),
            lines.begin() + static_cast<std::ptrdiff_t>(end)};
}

} // namespace

TextLines linesWithFeeds(const Document& document)
{
    TextLines lines;
    lines.reserve(document.size());
    const std::string_view text = document.text();
    for (std::size_t index = 0; index < document.size(); ++index) {
        const std::size_t begin = document.offset(index);
        lines.push_back(text.substr(begin, document.offset(index + 1) - begin));
    }
    return lines;
}

std::vector<MergeChunk> mergeChunks(const TextLines& base, const TextLines& ours,
                                    const TextLines& theirs)
{
    const std::vector<std::size_t> inOurs = matchLines(base, ours);
    const std::vector<std::size_t> inTheirs = matchLines(base, theirs);
    std::vector<MergeChunk> chunks;
    std::size_t baseBegin = 0;
    std::size_t oursBegin = 0;
    std::size_t theirsBegin = 0;
    const auto add = [&](std::size_t baseEnd, std::size_t oursEnd, std::size_t theirsEnd) {
        if (baseEnd > baseBegin || oursEnd > oursBegin || theirsEnd > theirsBegin) {
            chunks.push_back({slice(base, baseBegin, baseEnd), slice(ours, oursBegin, oursEnd),
                              slice(theirs, theirsBegin, theirsEnd)});
        }
        baseBegin = baseEnd;
        oursBegin = oursEnd;
        theirsBegin = theirsEnd;
    };
    for (std::size_t index = 0; index < base.size(); ++index) {
        if (inOurs[index] != noMatch && inTheirs[index] != noMatch) {
            add(index, inOurs[index], inTheirs[index]);
            add(index + 1, inOurs[index] + 1, inTheirs[index] + 1);
        }
    }
    add(base.size(), ours.size(), theirs.size());
    return chunks;
}

} // namespace QvVisa
