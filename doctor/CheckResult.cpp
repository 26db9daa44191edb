// SPDX-License-Identifier: MIT
#include "doctor/CheckResult.h"

#include <algorithm>

namespace QvVisa {

std::string_view markWord(Mark mark)
{
    switch (mark) {
    case Mark::Ok:
        return "ok";
    case Mark::Note:
        return "note";
    case Mark::Warning:
        return "warning";
    case Mark::Problem:
        return "problem";
    }
    return {};
}

const CheckResult* firstToRepair(const std::vector<CheckResult>& results)
{
    for (const Mark mark : {Mark::Problem, Mark::Warning}) {
        const auto found = std::find_if(results.begin(), results.end(),
                                        [=](const auto& result) { return result.mark == mark; });
        if (found != results.end()) {
            return &*found;
        }
    }
    return nullptr;
}

} // namespace QvVisa
