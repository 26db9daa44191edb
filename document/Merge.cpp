// SPDX-License-Identifier: MIT
#include "document/Merge.h"

#include "document/MergeChunks.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

namespace QvVisa {

namespace {

std::optional<EntryKey> keyOfLine(std::string_view line)
{
    if (!line.empty() && line.back() == '\n') {
        line.remove_suffix(1);
    }
    return keyOf(matchConfigurationLine(line));
}

/// How often each line is in a text and not in another.
std::map<std::string_view, std::size_t> surplus(const TextLines& lines, const TextLines& others)
{
    std::map<std::string_view, std::size_t> counts;
    for (const std::string_view line : lines) {
        ++counts[line];
    }
    for (const std::string_view line : others) {
        const auto found = counts.find(line);
        if (found != counts.end() && found->second > 0) {
            --found->second;
        }
    }
    return counts;
}

/// Takes one of the lines that are counted.
bool take(std::map<std::string_view, std::size_t>& counts, std::string_view line)
{
    const auto found = counts.find(line);
    if (found == counts.end() || found->second == 0) {
        return false;
    }
    --found->second;
    return true;
}

bool hasComment(const std::map<std::string_view, std::size_t>& counts)
{
    return std::any_of(counts.begin(), counts.end(), [](const auto& line) {
        return line.second > 0 && !keyOfLine(line.first) &&
               line.first.find_first_not_of(" \t\r\n\v\f") != std::string_view::npos;
    });
}

/// Ours with the lines that theirs has removed and added; a line that theirs has changed keeps its
/// place. None when both sides have changed comments.
std::optional<TextLines> mergeLines(const MergeChunk& chunk)
{
    auto removed = surplus(chunk.base, chunk.theirs);
    auto added = surplus(chunk.theirs, chunk.base);
    const auto addedByOurs = surplus(chunk.ours, chunk.base);
    if (hasComment(removed) && hasComment(surplus(chunk.base, chunk.ours))) {
        return std::nullopt;
    }
    for (const auto& [line, count] : addedByOurs) {
        // What both sides have added is added once.
        for (std::size_t i = 0; i < count && take(added, line); ++i) {
        }
    }
    std::map<EntryKey, std::string_view> replacements;
    TextLines newComments;
    for (const std::string_view line : chunk.theirs) {
        const auto key = keyOfLine(line);
        const auto found = added.find(line);
        if (found == added.end() || found->second == 0) {
            continue;
        }
        if (key) {
            replacements[*key] = line;
        } else {
            newComments.push_back(line);
        }
    }
    auto nextComment = newComments.begin();
    TextLines result;
    for (const std::string_view line : chunk.ours) {
        if (!take(removed, line)) {
            result.push_back(line);
            continue;
        }
        if (const auto key = keyOfLine(line)) {
            const auto replacement = replacements.find(*key);
            if (replacement != replacements.end() && take(added, replacement->second)) {
                result.push_back(replacement->second);
            }
        } else if (nextComment != newComments.end() && take(added, *nextComment)) {
            result.push_back(*nextComment++);
        }
    }
    for (const std::string_view line : chunk.theirs) {
        if (take(added, line)) {
            result.push_back(line);
        }
    }
    return result;
}

/// Appends lines; one without a line feed gets one when another line follows.
void append(std::string& text, const TextLines& lines)
{
    for (const std::string_view line : lines) {
        if (!text.empty() && text.back() != '\n') {
            text += '\n';
        }
        text.append(line);
    }
}

void appendConflict(std::string& text, const TextLines& ours, const TextLines& theirs)
{
    append(text, {"<<<<<<< ours\n"});
    append(text, ours);
    append(text, {"=======\n"});
    append(text, theirs);
    append(text, {">>>>>>> theirs\n"});
}

/// Everything between what both sides have in common at the beginning and at the end.
MergedText wholeConflict(const TextLines& ours, const TextLines& theirs)
{
    const std::size_t shorter = std::min(ours.size(), theirs.size());
    std::size_t begin = 0;
    while (begin < shorter && ours[begin] == theirs[begin]) {
        ++begin;
    }
    std::size_t end = 0;
    while (end < shorter - begin &&
           ours[ours.size() - 1 - end] == theirs[theirs.size() - 1 - end]) {
        ++end;
    }
    const auto from = static_cast<std::ptrdiff_t>(begin);
    const auto to = static_cast<std::ptrdiff_t>(end);
    MergedText result;
    append(result.text, {ours.begin(), ours.begin() + from});
    appendConflict(result.text, {ours.begin() + from, ours.end() - to},
                   {theirs.begin() + from, theirs.end() - to});
    append(result.text, {ours.end() - to, ours.end()});
    result.hasConflict = true;
    return result;
}

/// The chunks of a merge put together, with and without markers.
class ChunkMerge
{
public:
    ChunkMerge(const std::vector<MergeChunk>& chunks, const MergedMeaning& merged)
        : m_merged(merged)
    {
        for (const MergeChunk& chunk : chunks) {
            add(chunk);
        }
    }

    /// True when the result says what the merge of the entries says, and each entry in conflict is
    /// between markers and nowhere else that was changed.
    bool isRight() const
    {
        for (const EntryKey& key : m_merged.conflicts) {
            if (m_marked.count(key) == 0 || m_changedElsewhere.count(key) != 0) {
                return false;
            }
        }
        // With our side of each conflict the entries that are not in it mean what they should.
        Meaning meaning{Document(m_withOurs)};
        Meaning wanted = m_merged.meaning;
        for (const EntryKey& key : m_marked) {
            meaning.values.erase(key);
            wanted.values.erase(key);
            if (const auto device = deviceOf(key)) {
                meaning.devices.erase(*device);
                wanted.devices.erase(*device);
            }
        }
        return meaning == wanted;
    }

    MergedText result() const { return {m_text, m_hasConflict}; }

private:
    void add(const MergeChunk& chunk)
    {
        std::optional<TextLines> lines = chunk.merged();
        if (chunk.isConflict()) {
            lines = hasEntryInConflict(chunk) ? std::nullopt : mergeLines(chunk);
        }
        if (!lines) {
            mark(chunk);
            return;
        }
        append(m_text, *lines);
        append(m_withOurs, *lines);
        if (chunk.isChangedByOurs() || chunk.isChangedByTheirs()) {
            addKeys(chunk, m_changedElsewhere);
        }
    }

    static void addKeys(const MergeChunk& chunk, std::set<EntryKey>& keys)
    {
        for (const TextLines* lines : {&chunk.base, &chunk.ours, &chunk.theirs}) {
            for (const std::string_view line : *lines) {
                if (const auto key = keyOfLine(line)) {
                    keys.insert(*key);
                }
            }
        }
    }

    bool hasEntryInConflict(const MergeChunk& chunk) const
    {
        std::set<EntryKey> keys;
        addKeys(chunk, keys);
        return std::any_of(keys.begin(), keys.end(), [this](const EntryKey& key) {
            return m_merged.conflicts.count(key) != 0;
        });
    }

    void mark(const MergeChunk& chunk)
    {
        appendConflict(m_text, chunk.ours, chunk.theirs);
        append(m_withOurs, chunk.ours);
        m_hasConflict = true;
        addKeys(chunk, m_marked);
    }

    const MergedMeaning& m_merged;
    std::string m_text;
    std::string m_withOurs;
    std::set<EntryKey> m_marked;           ///< With a line between markers.
    std::set<EntryKey> m_changedElsewhere; ///< With a line in another chunk that has changed.
    bool m_hasConflict = false;
};

/// The value that three have, of which two may have changed; none for a conflict.
template <typename Value>
std::optional<Value> mergeValues(const Value& base, const Value& ours, const Value& theirs)
{
    if (ours == theirs || theirs == base) {
        return ours;
    }
    return ours == base ? std::optional(theirs) : std::nullopt;
}

void mergeDevices(const Meaning& base, const Meaning& ours, const Meaning& theirs,
                  MergedMeaning& merged)
{
    std::set<Device> all = base.devices;
    all.insert(ours.devices.begin(), ours.devices.end());
    all.insert(theirs.devices.begin(), theirs.devices.end());
    for (const Device& device : all) {
        // A Boolean that two have changed is the same in both.
        if (*mergeValues(base.devices.count(device), ours.devices.count(device),
                         theirs.devices.count(device)) != 0) {
            merged.meaning.devices.insert(device);
        }
    }
    for (const auto& [key, value] : merged.meaning.values) {
        // One side has removed a device that the other has changed.
        const auto device = deviceOf(key);
        if (device && merged.meaning.devices.count(*device) == 0) {
            merged.conflicts.insert(key);
        }
    }
}

} // namespace

MergedMeaning mergeMeanings(const Meaning& base, const Meaning& ours, const Meaning& theirs)
{
    std::set<EntryKey> keys;
    for (const Meaning* meaning : {&base, &ours, &theirs}) {
        for (const auto& [key, value] : meaning->values) {
            keys.insert(key);
        }
    }
    MergedMeaning merged;
    for (const EntryKey& key : keys) {
        const auto value = mergeValues(base.value(key), ours.value(key), theirs.value(key));
        if (!value) {
            merged.conflicts.insert(key);
        }
        merged.meaning.set(key, value.value_or(ours.value(key)));
    }
    mergeDevices(base, ours, theirs, merged);
    return merged;
}

MergedText mergeDocuments(const Document& base, const Document& ours, const Document& theirs)
{
    const MergedMeaning merged = mergeMeanings(Meaning(base), Meaning(ours), Meaning(theirs));
    const TextLines oursLines = linesWithFeeds(ours);
    const TextLines theirsLines = linesWithFeeds(theirs);
    const std::vector<MergeChunk> chunks =
        mergeChunks(linesWithFeeds(base), oursLines, theirsLines);
    const ChunkMerge merge(chunks, merged);
    return merge.isRight() ? merge.result() : wholeConflict(oursLines, theirsLines);
}

} // namespace QvVisa
