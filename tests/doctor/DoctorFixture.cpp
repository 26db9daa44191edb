// SPDX-License-Identifier: MIT
#include "tests/doctor/DoctorFixture.h"

#include "tests/support/Files.h"
#include "tests/support/OrdinaryUser.h"

#include <sched.h>
#include <unistd.h>
#ifndef __APPLE__
#include <sys/mount.h>
#endif

#include <iostream>

namespace support {

namespace {

std::string replaced(std::string text, const std::string& from, const std::string& to)
{
    for (std::size_t at = text.find(from); at != std::string::npos;
         at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

} // namespace

std::filesystem::path DoctorFixture::file() const
{
    return m_home.home() / ".quorvane" / "visa.conf";
}

std::filesystem::path DoctorFixture::writeFile(std::string_view lines) const
{
    std::filesystem::create_directories(file().parent_path());
    support::writeFile(file(), ":QvVisaConfigurationFileVersion01\n" + std::string(lines));
    using std::filesystem::perms;
    for (const std::filesystem::path& path : {m_home.root(), m_home.home(), file().parent_path()}) {
        std::filesystem::permissions(path, perms::owner_all | perms::group_read |
                                               perms::group_exec | perms::others_read |
                                               perms::others_exec);
    }
    return file();
}

QvVisa::Machine DoctorFixture::machine() const
{
    QvVisa::Machine machine = QvVisa::examineMachine(m_fileOption, m_system.path("/").string());
    machine.now += m_clock;
    machine.probe = m_probe ? &*m_probe : nullptr;
    machine.finderLog = m_finderLog;
    machine.deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    return machine;
}

std::string DoctorFixture::lines(const std::string& check, bool hasRemedies) const
{
    std::string text;
    for (const QvVisa::CheckResult& result :
         QvVisa::runChecks(QvVisa::checksNamed(check), machine())) {
        text += std::string(markWord(result.mark)) + ": " + result.text +
                (hasRemedies && !result.remedy.empty() ? " -> " + result.remedy : "") + '\n';
    }
    return replaced(text, m_home.root().string(), "FOLDER");
}

std::string DoctorFixture::results(const std::string& check) const
{
    return lines(check, false);
}

std::string DoctorFixture::remedies(const std::string& check) const
{
    return lines(check, true);
}

bool DoctorFixture::ordinaryUserFinds(const std::string& check, const std::string& expected) const
{
    return asOrdinaryUser([&] {
        const std::string found = results(check);
        if (found != expected) {
            std::cout << "expected: " << expected << "found: " << found << std::flush;
        }
        return found == expected;
    });
}

std::optional<bool> withOwnMounts([[maybe_unused]] const std::function<bool()>& action)
{
#ifndef __APPLE__
    bool isAllowed = false;
    const auto unshared = [] {
        return ::unshare(::geteuid() == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER) == 0 &&
               ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    };
    isAllowed = inChildProcess(unshared);
    if (isAllowed) {
        return inChildProcess([&] { return unshared() && action(); });
    }
#endif
    return std::nullopt;
}

} // namespace support
