// SPDX-License-Identifier: MIT
#pragma once

#include "document/Document.h"
#include "document/Meaning.h"

#include <set>
#include <string>

namespace QvVisa {

/// A three-way merge of what the file means, entry by entry.
struct MergedMeaning
{
    Meaning meaning;
    /// Keys that both sides have changed, each in another way. Their values in the meaning are
    /// those of ours.
    std::set<EntryKey> conflicts;
};

MergedMeaning mergeMeanings(const Meaning& base, const Meaning& ours, const Meaning& theirs);

struct MergedText
{
    std::string text;
    /// The text has conflict markers.
    bool hasConflict = false;
};

/// Merges two texts that come from a common one. Where git's merge by lines has a conflict, but no
/// entry and no comment is in conflict, the lines are merged one by one. Without a conflict the
/// result means exactly mergeMeanings(), and every comment that either side has added is in it.
/// Otherwise markers as git writes them enclose the lines of both sides:
///
///     <<<<<<< ours
///     =======
///     >>>>>>> theirs
///
/// Ours and theirs have the version header; the base may be empty.
MergedText mergeDocuments(const Document& base, const Document& ours, const Document& theirs);

} // namespace QvVisa
