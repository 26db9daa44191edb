// SPDX-License-Identifier: MIT
#include "config/FileAttributes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace QvVisa {

namespace {

/// The access control list is an attribute, too; not every file system lists it.
constexpr const char* s_accessList = "system.posix_acl_access";

/// Attributes that the kernel derives from the file's contents or drops when they change.
constexpr std::array<std::string_view, 3> s_ofContents = {"security.capability", "security.evm",
                                                          "security.ima"};

bool meansNone(int error)
{
    return error == ENODATA || error == ENOTSUP;
}

/// Calls until the result fits: read(nullptr, 0) returns the size that is needed, and the value may
/// grow in between. Nothing, with errno set, on failure.
template <typename Read>
std::optional<std::string> readSized(Read read)
{
    for (;;) {
        const ssize_t size = read(nullptr, 0);
        if (size <= 0) {
            return size == 0 ? std::optional<std::string>(std::string()) : std::nullopt;
        }
        std::string value(static_cast<std::size_t>(size), '\0');
        const ssize_t length = read(value.data(), value.size());
        if (length >= 0) {
            value.resize(static_cast<std::size_t>(length));
            return value;
        }
        if (errno != ERANGE) {
            return std::nullopt;
        }
    }
}

std::optional<std::string> valueOf(int file, const std::string& name)
{
    return readSized([&](char* value, std::size_t size) {
        return ::fgetxattr(file, name.c_str(), value, size);
    });
}

/// The file's attributes that a copy needs, the access control list included if it may have one.
std::optional<std::vector<std::string>> namesOf(int file)
{
    const auto list = readSized(
        [file](char* names, std::size_t size) { return ::flistxattr(file, names, size); });
    if (!list && !meansNone(errno)) {
        return std::nullopt;
    }
    std::vector<std::string> names = {s_accessList};
    const std::string text = list.value_or(std::string());
    for (std::size_t begin = 0; begin < text.size();) {
        const std::string name = text.c_str() + begin;
        begin += name.size() + 1;
        const bool isOfContents =
            std::find(s_ofContents.begin(), s_ofContents.end(), name) != s_ofContents.end();
        if (name != s_accessList && !isOfContents) {
            names.push_back(name);
        }
    }
    return names;
}

bool copyAttribute(int from, int to, const std::string& name)
{
    const auto value = valueOf(from, name);
    if (!value && !meansNone(errno)) {
        return false;
    }
    const auto present = valueOf(to, name);
    if (!present && !meansNone(errno)) {
        return false;
    }
    if (value == present) {
        return true;
    }
    return value ? ::fsetxattr(to, name.c_str(), value->data(), value->size(), 0) == 0
                 : ::fremovexattr(to, name.c_str()) == 0;
}

} // namespace

bool copyExtendedAttributes(int from, int to)
{
    const auto names = namesOf(from);
    return names && std::all_of(names->begin(), names->end(), [=](const std::string& name) {
               return copyAttribute(from, to, name);
           });
}

bool isAppendOnly(int folder)
{
    struct statx status = {};
    return ::statx(folder, "", AT_EMPTY_PATH, 0, &status) == 0 &&
           (status.stx_attributes & STATX_ATTR_APPEND) != 0;
}

} // namespace QvVisa
