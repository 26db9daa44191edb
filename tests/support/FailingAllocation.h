// SPDX-License-Identifier: MIT
#pragma once

namespace support {

/// Makes one operator new of this thread throw std::bad_alloc. A program that links the library
/// qvvisa_test_allocations has an operator new of its own. One object at a time in a thread.
class FailingAllocation
{
public:
    /// 1 is the next allocation.
    explicit FailingAllocation(int number);
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    /// True once the allocation was asked for, and failed.
    bool hasFailed() const;
};

/// Runs the action again and again, and makes its first, second, ... allocation fail, until it
/// needs no more of them. Returns how many failed.
template <typename Prepare, typename Action, typename Check>
int failEachAllocation(Prepare prepare, Action action, Check check)
{
    for (int number = 1;; ++number) {
        prepare();
        bool hasFailed = false;
        {
            const FailingAllocation failing(number);
            action();
            hasFailed = failing.hasFailed();
        }
        if (!hasFailed) {
            return number - 1;
        }
        check(number);
    }
}

} // namespace support
