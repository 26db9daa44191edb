// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace QvVisa {

/// How serious a result is, in ascending order.
enum class Mark
{
    Ok,
    Note,    ///< Worth knowing; nothing is wrong.
    Warning, ///< It may cause trouble.
    Problem, ///< Something does not work.
};

/// "ok", "note", "warning", "problem".
std::string_view markWord(Mark mark);

/// One thing that a check found. The texts are UTF-8; they may hold control characters of files
/// and libraries: escape them when they are printed.
struct CheckResult
{
    std::string id;
    Mark mark = Mark::Ok;
    std::string text;   ///< One sentence.
    std::string remedy; ///< What to do, as a sentence; empty: nothing.
};

/// Collects the results of one check.
class CheckReport
{
public:
    CheckReport(std::string id, std::vector<CheckResult>& results)
        : m_id(std::move(id)),
          m_results(&results)
    {}

    void ok(std::string text) { add(Mark::Ok, std::move(text)); }
    void note(std::string text, std::string remedy = {})
    {
        add(Mark::Note, std::move(text), std::move(remedy));
    }
    void warning(std::string text, std::string remedy = {})
    {
        add(Mark::Warning, std::move(text), std::move(remedy));
    }
    void problem(std::string text, std::string remedy = {})
    {
        add(Mark::Problem, std::move(text), std::move(remedy));
    }
    void add(Mark mark, std::string text, std::string remedy = {})
    {
        m_results->push_back({m_id, mark, std::move(text), std::move(remedy)});
    }

private:
    std::string m_id;
    std::vector<CheckResult>* m_results;
};

/// The one to repair first: the first problem, else the first warning; null when there is neither.
const CheckResult* firstToRepair(const std::vector<CheckResult>& results);

} // namespace QvVisa
