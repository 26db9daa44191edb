// SPDX-License-Identifier: MIT
#include "tests/support/OrdinaryUser.h"

#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <string>

namespace support {

namespace {

constexpr int s_true = 10;
constexpr int s_false = 11;
constexpr int s_stillRoot = 12;

#ifdef __APPLE__
using GroupCount = int;
#else
using GroupCount = std::size_t;
#endif

bool giveUpRoot(const std::vector<gid_t>& groups)
{
    return ::geteuid() != 0 ||
           (::setgroups(static_cast<GroupCount>(groups.size()), groups.data()) == 0 &&
            ::setgid(ordinaryGroup) == 0 && ::setuid(ordinaryUser) == 0);
}

} // namespace

bool inChildProcess(const std::function<bool()>& action)
{
    const pid_t child = ::fork();
    if (child < 0) {
        throw std::runtime_error("cannot fork");
    }
    if (child == 0) {
        ::_exit(action() ? s_true : s_false);
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            throw std::runtime_error("cannot wait for the child");
        }
    }
    if (!WIFEXITED(status) || (WEXITSTATUS(status) != s_true && WEXITSTATUS(status) != s_false)) {
        throw std::runtime_error("the child ended with status " + std::to_string(status));
    }
    return WEXITSTATUS(status) == s_true;
}

bool asOrdinaryUser(const std::function<bool()>& action, const std::vector<gid_t>& groups)
{
    return inChildProcess([&] {
        if (!giveUpRoot(groups)) {
            ::_exit(s_stillRoot);
        }
        return action();
    });
}

} // namespace support
