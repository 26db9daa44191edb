// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

/// What is wrong with a line of a bench file.
class BenchLineError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The words of one line of a bench file: separated by blanks, "quoted" where they contain blanks,
/// with \" \\ and \xNN for special bytes. A # at the beginning of a word begins a comment.
class BenchLine
{
public:
    /// A word; if it has the form name=value, its two halves too.
    struct Word
    {
        std::string text;
        bool hasValue = false;
        std::string name;
        std::string value;
    };

    /// Throws BenchLineError.
    explicit BenchLine(std::string_view text);

    const std::vector<Word>& words() const { return m_words; }

private:
    void readWord();
    char readEscape();

    std::string_view m_rest;
    std::vector<Word> m_words;
};

} // namespace simulator
