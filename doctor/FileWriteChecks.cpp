// SPDX-License-Identifier: MIT
#include "doctor/FileChecks.h"

#include "config/Encoding.h"
#include "config/FileAttributes.h"
#include "config/TargetFile.h"
#include "doctor/CheckResult.h"
#include "doctor/Machine.h"
#include "doctor/Owner.h"
#include "doctor/Wording.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>
#include <vector>

namespace QvVisa {

namespace {

/// The file that a save would write to, with its status. Nothing is opened for writing.
struct Target
{
    TargetFile place;
    struct stat status = {};

    std::string path() const { return pathToUtf8(place.path().string()); }
    std::string folder() const { return pathToUtf8(folderPath()); }
    std::string folderPath() const
    {
        const std::string folder = place.path().parent_path().string();
        return folder.empty() ? "." : folder;
    }
};

/// Nothing, with errno set, when a save would not find the file either.
std::optional<Target> targetOf(const Machine& machine)
{
    std::optional<TargetFile> place = TargetFile::resolve(machine.file);
    if (!place) {
        return std::nullopt;
    }
    Target target{*std::move(place)};
    if (::fstatat(target.place.folder(), target.place.name().c_str(), &target.status,
                  AT_SYMLINK_NOFOLLOW) != 0) {
        return std::nullopt;
    }
    return target;
}

bool isWritable(int folder, const char* name, int mode)
{
    return ::faccessat(folder, name, mode, AT_EACCESS) == 0;
}

/// What is special about a file or folder, which permissions do not show.
struct Attributes
{
    bool isImmutable = false;
    bool isAppendOnly = false;
    bool isMountPoint = false;
};

Attributes attributesOf([[maybe_unused]] int folder, [[maybe_unused]] const std::string& name)
{
    Attributes attributes;
#ifdef STATX_ATTR_MOUNT_ROOT
    struct statx status = {};
    if (::statx(folder, name.c_str(), AT_SYMLINK_NOFOLLOW, 0, &status) == 0) {
        attributes.isImmutable = (status.stx_attributes & STATX_ATTR_IMMUTABLE) != 0;
        attributes.isAppendOnly = (status.stx_attributes & STATX_ATTR_APPEND) != 0;
        attributes.isMountPoint = (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
    }
#endif
    return attributes;
}

std::string commandOn(const std::string& command, const std::string& path)
{
    return command + ' ' + shellWord(path);
}

bool isBelowHome(const Machine& machine, const std::string& path)
{
    const std::string home = machine.environment.home.value_or("");
    return !home.empty() && path.rfind(home + '/', 0) == 0;
}

void reportNotWritable(const Machine& machine, const Target& target, CheckReport& report)
{
    const int error = errno;
    const std::string path = target.place.path().string();
    if (error == EROFS) {
        report.problem(target.path() + " is on a file system that is mounted read-only.",
                       "Mount it writable, or name a file elsewhere with QVVISACONFFILE.");
    } else if (error == EACCES && target.status.st_uid == ::geteuid()) {
        report.problem(target.path() + " may not be written: its rights are " +
                           rightsText(target.status.st_mode) + '.',
                       commandOn("chmod u+w", path));
    } else {
        // That an ordinary user may not write it is usual for the system-wide file.
        const bool isOfHome = isBelowHome(machine, path);
        report.add(isOfHome ? Mark::Problem : Mark::Warning,
                   target.path() + " may not be written by this user: it belongs to " +
                       userName(target.status.st_uid) + ", its rights are " +
                       rightsText(target.status.st_mode) + '.',
                   isOfHome ? commandOn("sudo chown " + userName(::geteuid()), path)
                            : "Copy it to ~/.quorvane/visa.conf and edit the copy, or ask its "
                              "owner for the right to write it.");
    }
}

/// True when a problem was reported.
bool reportSpace(const Target& target, CheckReport& report)
{
    struct statvfs system = {};
    const FileDescriptor folder = FileDescriptor::openFolder(target.place.folder(), ".");
    if (!folder.isOpen() || ::fstatvfs(folder.get(), &system) != 0) {
        return false;
    }
    const std::uintmax_t free = std::uintmax_t{system.f_bavail} * system.f_frsize;
    // A save needs room for the new text beside the old one.
    constexpr std::uintmax_t spare = std::uintmax_t{64} * 1024;
    const std::uintmax_t needed = static_cast<std::uintmax_t>(target.status.st_size) + spare;
    if (free < needed) {
        report.problem("The file system of " + target.folder() + " has " + sizeText(free) +
                           " left; a save needs " + sizeText(needed) + '.',
                       "Remove files that are not needed.");
        return true;
    }
    if (system.f_files > 0 && system.f_favail == 0) {
        report.problem("The file system of " + target.folder() + " takes no further file.",
                       "Remove files that are not needed.");
        return true;
    }
    return false;
}

/// Whether this user may give a new file in the folder that group.
bool mayGiveGroup(const Target& target, const struct stat& folder)
{
    const gid_t group = target.status.st_gid;
    const bool isInherited = (folder.st_mode & S_ISGID) != 0;
    if (group == (isInherited ? folder.st_gid : ::getegid()) || group == ::getegid()) {
        return true;
    }
    const int count = std::max(::getgroups(0, nullptr), 0);
    std::vector<gid_t> groups(static_cast<std::size_t>(count));
    return ::getgroups(count, groups.data()) == count &&
           std::find(groups.begin(), groups.end(), group) != groups.end();
}

struct InPlaceReason
{
    std::string text;
    std::string remedy; ///< Empty: nothing to do about it.
};

/// Why a save cannot replace the file as a whole; empty when it can.
std::vector<InPlaceReason> reasonsForInPlace(const Target& target)
{
    std::vector<InPlaceReason> reasons;
    const std::string path = target.place.path().string();
    const int folder = target.place.folder();
    const Attributes attributes = attributesOf(folder, target.place.name());
    struct stat folderStatus = {};
    const bool isRoot = ::geteuid() == 0;
    if (target.status.st_nlink > 1) {
        reasons.push_back(
            {"it has " + std::to_string(target.status.st_nlink) + " names (hard links)",
             "To separate it from the others: " + commandOn("cp -p", path) + ' ' +
                 shellWord(path + ".new") + " && " + commandOn("mv", path + ".new") + ' ' +
                 shellWord(path)});
    }
    if (attributes.isMountPoint) {
        reasons.push_back({"it is a mount point, as in a container", ""});
    }
    if (!isWritable(folder, ".", W_OK | X_OK) || attributesOf(folder, ".").isImmutable) {
        reasons.push_back({"its folder " + target.folder() + " takes no new file from this user",
                           "Give this user the right to write the folder."});
    } else if (isAppendOnly(folder)) {
        reasons.push_back({"files cannot be renamed in its folder, which is append-only",
                           commandOn("sudo chattr -a", target.folderPath())});
    }
    if (!isRoot && target.status.st_uid != ::geteuid()) {
        reasons.push_back(
            {"a new file would not belong to " + userName(target.status.st_uid) + ", its owner",
             ""});
    } else if (!isRoot && ::fstatat(folder, ".", &folderStatus, 0) == 0 &&
               !mayGiveGroup(target, folderStatus)) {
        reasons.push_back({"this user is not in its group, " + groupName(target.status.st_gid),
                           commandOn("chgrp \"$(id -g)\"", path)});
    }
    return reasons;
}

} // namespace

void checkWrite(const Machine& machine, CheckReport& report)
{
    const std::optional<Target> target = targetOf(machine);
    if (!target) {
        report.problem(pathToUtf8(machine.file) + " cannot be written: " + errorText(errno) + '.',
                       machine.command("doctor file.link") + " looks at the links of its path.");
        return;
    }
    const int folder = target->place.folder();
    const std::string& name = target->place.name();
    const Attributes attributes = attributesOf(folder, name);
    if (attributes.isImmutable || attributes.isAppendOnly) {
        const bool isImmutable = attributes.isImmutable;
        report.problem(target->path() + " is " + (isImmutable ? "immutable" : "append-only") +
                           ": nobody can write it, not even root.",
                       commandOn(isImmutable ? "sudo chattr -i" : "sudo chattr -a",
                                 target->place.path().string()));
    } else if (!isWritable(folder, name.c_str(), W_OK)) {
        reportNotWritable(machine, *target, report);
    } else if (!reportSpace(*target, report)) {
        report.ok("This user can write the file.");
    }
}

void checkHow(const Machine& machine, CheckReport& report)
{
    const std::optional<Target> target = targetOf(machine);
    const bool isWritten =
        target && isWritable(target->place.folder(), target->place.name().c_str(), W_OK);
    if (!isWritten) {
        report.note("The file is not written at all; file.write says why.");
        return;
    }
    const std::vector<InPlaceReason> reasons = reasonsForInPlace(*target);
    if (reasons.empty()) {
        report.ok("A save replaces the file as a whole.");
    }
    std::vector<std::string> texts;
    std::string remedy;
    for (const InPlaceReason& reason : reasons) {
        texts.push_back(reason.text);
        remedy = remedy.empty() ? reason.remedy : remedy;
    }
    if (!texts.empty()) {
        report.note("A save overwrites the file in place, since " + enumerated(texts) +
                        "; a power cut may tear it.",
                    remedy);
    }
}

void checkLink(const Machine& machine, CheckReport& report)
{
    const std::optional<Target> target = targetOf(machine);
    if (!target) {
        const int error = errno;
        report.problem("The links of " + pathToUtf8(machine.file) +
                           (error == EACCES ? " are not followed by a save: one of them, in a "
                                              "folder that everyone may write, belongs to another "
                                              "user."
                                            : " lead nowhere: " + errorText(error) + '.'),
                       "Name the file itself.");
        return;
    }
    struct stat named = {};
    if (::lstat(machine.file.c_str(), &named) == 0 && S_ISLNK(named.st_mode)) {
        report.note(pathToUtf8(machine.file) + " is a symbolic link to " + target->path() +
                    "; a save writes that file, and the link stays.");
    } else if (target->status.st_nlink > 1) {
        report.note("The file has " + std::to_string(target->status.st_nlink) +
                    " names (hard links): a save changes what all of them show.");
    } else {
        report.ok("The file has one name, and no link leads to it.");
    }
}

} // namespace QvVisa
