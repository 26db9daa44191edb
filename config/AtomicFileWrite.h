// SPDX-License-Identifier: MIT
#pragma once

#include "config/TargetFile.h"
#include "config/TemporaryFile.h"
#include "config/WriteOptions.h"

#include <memory>
#include <string>
#include <string_view>

namespace QvVisa {

/// Makes bytes, a text of lines, the whole contents of the file at path, creating it if it does not
/// exist. Whatever happens meanwhile (a kill, a full disk, a write error), the file afterwards
/// holds either all of its old bytes or all of the new ones.
///
/// The new bytes are on the disk before they take the file's name. Nothing waits for the name: a
/// power cut within the seconds until the file system writes it leaves the old bytes.
///
/// An existing file must be writable, else nothing happens. It keeps its owner, group, rights,
/// access control list and extended attributes. Links are followed as config/TargetFile.h says;
/// they stay links.
///
/// A file that cannot be replaced as a whole (it has further hard links, is a mount point, an
/// attribute cannot be kept, its folder takes no new file) is overwritten as config/InPlaceWrite.h
/// says, with a complete copy of the new bytes on the disk until that is done: a temporary file in
/// the target's folder, else in HOME, else in the system's folder for temporary files.
///
/// After success, temporary files of dead processes are removed from the folder.
///
/// Returns true when the file holds the new bytes. Failures of the file system do not throw.
bool writeFileAtomically(const std::string& path, std::string_view bytes,
                         const WriteOptions& options = {});

// The parts, for a writer that puts the new file in place by other means.

enum class ReplaceOutcome
{
    Ready,
    Failed,     ///< The disk is full or broken: the target is best left alone.
    Impossible, ///< Not possible for this file or folder; fall back to writing in place.
};

/// Whether an errno value means Failed or Impossible.
ReplaceOutcome outcomeOfError(int error);

/// Creates a temporary file with the bytes in the target's folder and waits until it has reached
/// the disk. Ready: it has an existing target's owner, rights and attributes, and can take the
/// target's name by renameTo() or exchangeWith(). Impossible: it may be null, or a complete copy
/// that must not take the name.
ReplaceOutcome prepareReplacement(const TargetFile& target, std::string_view bytes,
                                  const WriteOptions& options,
                                  std::unique_ptr<TemporaryFile>& replacement);

/// Overwrites an existing target in place while a complete copy of the bytes is on the disk: the
/// given one, which prepareReplacement() may have made, or another. True when the target holds the
/// new bytes. If the file is torn, the copy is kept.
bool writeInPlaceWithCopy(const TargetFile& target, std::string_view bytes,
                          const WriteOptions& options, std::unique_ptr<TemporaryFile> copy);

} // namespace QvVisa
