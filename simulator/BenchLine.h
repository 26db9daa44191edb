// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

/// What is wrong with a line of a bench file, in words for its author.
class BenchLineError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// One line of a bench file in words: parted by blanks, with "quotes" around what holds blanks,
/// \" \\ and \xNN for what cannot be typed, and a comment behind a # at the beginning of a word.
class BenchLine
{
public:
    /// A word; where it has the form name=value, its two halves.
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
