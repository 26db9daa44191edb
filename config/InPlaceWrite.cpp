// SPDX-License-Identifier: MIT
#include "config/InPlaceWrite.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string>

namespace QvVisa {

namespace {

constexpr off_t s_mostKept = off_t{256} * 1024 * 1024;

std::optional<std::string> readContents(const TargetFile& target)
{
    if (target.status().st_size > s_mostKept) {
        errno = EFBIG;
        return std::nullopt;
    }
    std::string contents(static_cast<std::size_t>(target.status().st_size), '\0');
    const ssize_t length = readFully(target.descriptor(), contents.data(), contents.size());
    if (length < 0) {
        return std::nullopt;
    }
    contents.resize(static_cast<std::size_t>(length));
    return contents;
}

/// Writes the bytes padded with line feeds to length, then cuts the padding off: the text means the
/// same if the process is killed in between, and a write that fails can be undone without new disk
/// space. Length 0 for no padding.
bool overwrite(int descriptor, std::string_view bytes, std::size_t length)
{
    std::string padded(bytes);
    padded.resize(std::max(bytes.size(), length), '\n');
    return writeFully(descriptor, padded) &&
           uninterrupted(
               [=] { return ::ftruncate(descriptor, static_cast<off_t>(bytes.size())); }) == 0;
}

} // namespace

InPlaceOutcome writeInPlace(const TargetFile& target, std::string_view bytes,
                            const WriteOptions& options)
{
    const std::optional<std::string> old = readContents(target);
    if (!old) {
        return InPlaceOutcome::Unchanged;
    }
    const int file = target.descriptor();
    if (overwrite(file, bytes, old->size())) {
        adjustModificationTime(file, target, options);
        if (flushToDisk(file)) {
            return InPlaceOutcome::Written;
        }
    }
    const int error = errno;
    const bool isUndone = overwrite(file, *old, 0) && flushToDisk(file);
    errno = error;
    return isUndone ? InPlaceOutcome::Unchanged : InPlaceOutcome::Torn;
}

} // namespace QvVisa
