// SPDX-License-Identifier: MIT
#include "command/TextTable.h"

#include <algorithm>

namespace QvVisa {

namespace {

using Row = std::vector<std::string>;

constexpr std::size_t s_gap = 2;
/// One cell of a megabyte must not pad every row to that width.
constexpr std::size_t s_widestPadding = 60;

/// The padded width of each column but the last, which is not padded.
std::vector<std::size_t> columnWidths(const std::vector<Row>& rows)
{
    std::vector<std::size_t> widths(rows.empty() ? 0 : rows.front().size() - 1);
    for (const Row& row : rows) {
        for (std::size_t i = 0; i < widths.size(); ++i) {
            widths[i] = std::min(std::max(widths[i], characterCount(row[i])), s_widestPadding);
        }
    }
    return widths;
}

std::string rowInColumns(const Row& row, const std::vector<std::size_t>& widths)
{
    std::string line;
    for (std::size_t i = 0; i < widths.size(); ++i) {
        const std::size_t count = characterCount(row[i]);
        line += row[i] + std::string(count < widths[i] ? widths[i] - count : 0, ' ');
        line += std::string(s_gap, ' ');
    }
    return line + row.back();
}

} // namespace

std::size_t characterCount(std::string_view utf8)
{
    return static_cast<std::size_t>(std::count_if(utf8.begin(), utf8.end(), [](char c) {
        constexpr unsigned maskOfContinuation = 0xC0;
        constexpr unsigned continuation = 0x80;
        return (static_cast<unsigned char>(c) & maskOfContinuation) != continuation;
    }));
}

std::string textTable(const std::vector<Row>& rows, std::size_t width)
{
    const std::vector<std::size_t> widths = columnWidths(rows);
    std::string inColumns;
    bool fits = true;
    for (const Row& row : rows) {
        const std::string line = rowInColumns(row, widths);
        fits = fits && (width == 0 || characterCount(line) <= width);
        inColumns += line + '\n';
    }
    if (fits) {
        return inColumns;
    }
    std::string text;
    for (const Row& row : rows) {
        text += row.front() + '\n';
        for (std::size_t i = 1; i < row.size(); ++i) {
            text += std::string(s_gap, ' ') + row[i] + '\n';
        }
    }
    return text;
}

} // namespace QvVisa
