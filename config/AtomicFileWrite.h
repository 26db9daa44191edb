// SPDX-License-Identifier: MIT
#pragma once

#include "config/TargetFile.h"
#include "config/TemporaryFile.h"

#include <memory>
#include <string>
#include <string_view>

namespace QvVisa {

/// Makes bytes, a text of lines, the whole contents of the file at path, creating it if it does not
/// exist. Whatever happens meanwhile (a kill, a full disk, a write error), the file afterwards
/// holds either all of its old bytes or all of the new ones, and the new ones have reached the
/// disk.
///
/// An existing file must be writable, else nothing happens. It keeps its mode, and its owner where
/// the system allows; a symbolic link stays one and the file it leads to is replaced.
///
/// Where the file cannot be replaced as a whole (it has further hard links, or its folder takes no
/// new file), it is overwritten as config/InPlaceWrite.h says.
///
/// Returns true when the file holds the new bytes. Failures of the file system do not throw.
bool writeFileAtomically(const std::string& path, std::string_view bytes);

/// What an attempt to replace a file as a whole came to.
enum class ReplaceOutcome
{
    Done,
    Failed,     ///< The disk is full or broken: the target is best left alone.
    Impossible, ///< Not possible for this file or folder; fall back to writing in place.
};

/// Which of Failed and Impossible an errno value means.
ReplaceOutcome outcomeOfError(int error);

/// Creates a temporary file in the target's folder that holds the bytes, has an existing target's
/// owner, rights and attributes, and has reached the disk: it can take the target's name by
/// renameTo() or exchangeWith(). The target must outlive it.
ReplaceOutcome prepareReplacement(const TargetFile& target, std::string_view bytes,
                                  std::unique_ptr<TemporaryFile>& replacement);

/// Waits until the folder's names have reached the disk. A failure is ignored: with or without the
/// last renaming, each name belongs to a whole file.
void flushFolder(int folder);

} // namespace QvVisa
