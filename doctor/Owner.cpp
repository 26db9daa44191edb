// SPDX-License-Identifier: MIT
#include "doctor/Owner.h"

#include <grp.h>
#include <pwd.h>

#include <array>

namespace QvVisa {

namespace {

/// Enough for an entry of each list; a group with more members than fit counts as unknown.
using EntryBuffer = std::array<char, std::size_t{64} * 1024>;

} // namespace

std::string userName(uid_t user)
{
    EntryBuffer buffer{};
    passwd entry = {};
    passwd* found = nullptr;
    ::getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found);
    return found != nullptr ? found->pw_name : "user " + std::to_string(user);
}

std::string groupName(gid_t group)
{
    EntryBuffer buffer{};
    ::group entry = {};
    ::group* found = nullptr;
    ::getgrgid_r(group, &entry, buffer.data(), buffer.size(), &found);
    return found != nullptr ? found->gr_name : "group " + std::to_string(group);
}

std::string rightsText(mode_t mode)
{
    std::string text = "0";
    for (int shift = 6; shift >= 0; shift -= 3) {
        text += static_cast<char>('0' + (mode >> shift & 7U));
    }
    return text;
}

bool isListedMember(const std::string& user, const std::string& group)
{
    EntryBuffer buffer{};
    ::group entry = {};
    ::group* found = nullptr;
    ::getgrnam_r(group.c_str(), &entry, buffer.data(), buffer.size(), &found);
    for (char** member = found != nullptr ? found->gr_mem : nullptr;
         member != nullptr && *member != nullptr; ++member) {
        if (user == *member) {
            return true;
        }
    }
    return false;
}

} // namespace QvVisa
