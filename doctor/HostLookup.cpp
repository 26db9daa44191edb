// SPDX-License-Identifier: MIT
#include "doctor/HostLookup.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

namespace QvVisa {

namespace {

constexpr std::size_t s_mostThreads = 16;
constexpr const char* s_noAnswer = "no answer within the time";

/// The text of a literal address in its normal form; nothing for a name.
std::optional<std::string> literalAddress(const std::string& text)
{
    for (const int family : {AF_INET, AF_INET6}) {
        std::array<unsigned char, sizeof(in6_addr)> bytes{};
        std::array<char, INET6_ADDRSTRLEN> written{};
        if (::inet_pton(family, text.c_str(), bytes.data()) == 1 &&
            ::inet_ntop(family, bytes.data(), written.data(), written.size()) != nullptr) {
            return written.data();
        }
    }
    return std::nullopt;
}

HostLookup lookUp(const std::string& name)
{
    addrinfo hints = {};
    hints.ai_socktype = SOCK_STREAM; // One entry for each address.
    addrinfo* list = nullptr;
    const int error = ::getaddrinfo(name.c_str(), nullptr, &hints, &list);
    if (error != 0) {
        return {{}, ::gai_strerror(error)};
    }
    const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> owned(list, &::freeaddrinfo);
    HostLookup result;
    for (const addrinfo* entry = list; entry != nullptr; entry = entry->ai_next) {
        std::array<char, NI_MAXHOST> text{};
        if (::getnameinfo(entry->ai_addr, entry->ai_addrlen, text.data(), text.size(), nullptr, 0,
                          NI_NUMERICHOST) == 0) {
            result.addresses.insert(text.data());
        }
    }
    return result;
}

/// The work that the threads share. They keep it alive, since they may outlive the caller.
struct Work
{
    explicit Work(std::vector<std::string> names) : waiting(std::move(names)) {}

    void run()
    {
        std::unique_lock<std::mutex> lock(mutex);
        while (!waiting.empty() && !isAbandoned) {
            const std::string name = waiting.back();
            waiting.pop_back();
            ++running;
            lock.unlock();
            HostLookup result = lookUp(name);
            lock.lock();
            --running;
            results[name] = std::move(result);
            changed.notify_all();
        }
    }

    std::mutex mutex; ///< Guards all that follows.
    std::condition_variable changed;
    std::vector<std::string> waiting;
    std::size_t running = 0;
    bool isAbandoned = false;
    std::map<std::string, HostLookup> results;
};

} // namespace

std::map<std::string, HostLookup> lookUpHosts(const std::set<std::string>& names,
                                              std::chrono::steady_clock::time_point deadline)
{
    std::map<std::string, HostLookup> results;
    std::vector<std::string> unknown;
    for (const std::string& name : names) {
        if (const auto address = literalAddress(name)) {
            results[name].addresses.insert(*address);
        } else {
            results[name].error = s_noAnswer;
            unknown.push_back(name);
        }
    }
    if (unknown.empty() || std::chrono::steady_clock::now() >= deadline) {
        return results;
    }
    const std::size_t count = std::min(unknown.size(), s_mostThreads);
    const auto work = std::make_shared<Work>(std::move(unknown));
    try {
        for (std::size_t i = 0; i < count; ++i) {
            std::thread([work] { work->run(); }).detach();
        }
    } catch (const std::system_error&) {
        // Fewer threads do the work, or the deadline ends it.
    }
    std::unique_lock<std::mutex> lock(work->mutex);
    work->changed.wait_until(lock, deadline,
                             [&work] { return work->waiting.empty() && work->running == 0; });
    work->isAbandoned = true;
    for (const auto& [name, result] : work->results) {
        results[name] = result;
    }
    return results;
}

} // namespace QvVisa
