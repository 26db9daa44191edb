// SPDX-License-Identifier: MIT
#pragma once

#include "document/Document.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace QvVisa {

/// Lines of a text with their line feeds.
using TextLines = std::vector<std::string_view>;

TextLines linesWithFeeds(const Document& document);

/// A piece of a three-way merge by lines.
struct MergeChunk
{
    TextLines base;
    TextLines ours;
    TextLines theirs;

    bool isChangedByOurs() const { return ours != base; }
    bool isChangedByTheirs() const { return theirs != base; }
    /// Both sides have changed the lines, each in another way.
    bool isConflict() const { return isChangedByOurs() && isChangedByTheirs() && ours != theirs; }
    /// The lines of the side that has changed them; ours in a conflict.
    const TextLines& merged() const { return isChangedByOurs() ? ours : theirs; }
};

/// The three texts cut at the lines that all of them share. Lines that are equal in all three are
/// chunks of their own.
std::vector<MergeChunk> mergeChunks(const TextLines& base, const TextLines& ours,
                                    const TextLines& theirs);

} // namespace QvVisa
