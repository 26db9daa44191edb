// SPDX-License-Identifier: MIT
// The program whose calls go wrong: runs one save, or one look of the store at its file, with the
// preloaded library acting on a plan.
//   save  PATH BYTESFILE REPORT ACTION CALL ERROR REPLACEMENT TARGET
//   load  PATH NEWFILE   REPORT ACTION CALL ERROR REPLACEMENT TARGET

#include "config/AtomicFileWrite.h"
#include "config/ConfigurationFile.h"
#include "tests/config/saving/FaultyCalls.h"
#include "tests/support/Files.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

/// Runs the action under the plan and returns the names of the calls seen.
template <typename Action>
std::string underPlan(const FaultPlan& plan, Action action)
{
    const auto start =
        reinterpret_cast<FaultyCallsStart>(::dlsym(RTLD_DEFAULT, "faultyCallsStart"));
    const auto stop = reinterpret_cast<FaultyCallsStop>(::dlsym(RTLD_DEFAULT, "faultyCallsStop"));
    if (start == nullptr || stop == nullptr) {
        throw std::runtime_error("the library is not preloaded");
    }
    start(&plan);
    action();
    return stop();
}

/// The provider ID and the store's resources, when they all say the same and there are as many as
/// the provider ID says; "mixed" for anything else.
std::string nameOfContents(const QvVisa::ConfigurationFile& store)
{
    for (const std::string& resource : store.m_resources) {
        if (resource != store.m_resources.front()) {
            return "mixed";
        }
    }
    return store.m_resources.size() == store.m_provider && store.m_provider != 0
               ? store.m_resources.front()
               : "mixed";
}

std::string save(const std::string& path, const std::string& bytesFile, const FaultPlan& plan)
{
    const std::string bytes = support::readFile(bytesFile);
    bool isReplaced = false;
    const std::string calls =
        underPlan(plan, [&] { isReplaced = QvVisa::writeFileAtomically(path, bytes); });
    return (isReplaced ? "true\n" : "false\n") + calls;
}

std::string load(const std::string& path, const std::string& newFile, const FaultPlan& plan)
{
    ::setenv("QVVISACONFFILE", path.c_str(), 1);
    QvVisa::ConfigurationFile& store = *QvVisa::ConfigurationFile::getInstance();
    const std::string first = nameOfContents(store);
    std::filesystem::rename(newFile, path);
    const std::string calls = underPlan(plan, [] { QvVisa::ConfigurationFile::getInstance(); });
    const std::string second = nameOfContents(store);
    QvVisa::ConfigurationFile::getInstance();
    return first + " " + second + " " + nameOfContents(store) + "\n" + calls;
}

} // namespace

int main(int argc, char** argv)
try {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    FaultPlan plan;
    plan.action = static_cast<FaultPlan::Action>(std::stoi(arguments.at(4)));
    plan.call = std::stoi(arguments.at(5));
    plan.error = std::stoi(arguments.at(6));
    plan.replacement = arguments.at(7).c_str();
    plan.target = arguments.at(8).c_str();
    const auto run = arguments[0] == "save" ? save : load;
    support::writeFile(arguments[3], run(arguments[1], arguments[2], plan));
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
