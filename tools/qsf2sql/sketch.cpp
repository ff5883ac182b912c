#include "sketch.h"

#include "text.h"

#include <algorithm>
#include <cmath>

// A curve in characters, of one size whatever its points: each column shows the highest of its values, so that narrow
// peaks stay visible where a mean would lose them. Values that are no numbers, or lie outside the range of x, draw
// nothing.

namespace qsf2sql_tool {

namespace {

constexpr std::size_t g_columns = 68;
constexpr std::size_t g_rows = 10;
constexpr std::size_t g_scaleWidth = 9;

/// The highest value in each column.
std::vector<double> columnsOf(const std::vector<double>& x, const std::vector<double>& y) {
    std::vector<double> columns(g_columns, 0.0);
    const double range = std::max(x.back() - x.front(), 1e-12);
    for (std::size_t point = 0; point < x.size(); ++point) {
        const double place = (x[point] - x.front()) / range * static_cast<double>(g_columns - 1);
        if (!(place >= 0.0 && place < static_cast<double>(g_columns)))
            continue;
        double& column = columns[static_cast<std::size_t>(place)];
        column = std::max(column, y[point]);
    }
    return columns;
}

std::string xScale(double first, double last, const std::string& name) {
    const std::string left = fixed(first, 1);
    const std::string right = fixed(last, 1);
    const std::size_t between = g_columns - std::min(g_columns, left.size() + right.size() + name.size());
    const std::string indent(g_scaleWidth + 2, ' ');
    return indent + left + std::string(between / 2, ' ') + name + std::string(between - between / 2, ' ') + right +
           '\n';
}

}  // namespace

std::string sketch(const std::vector<double>& x, const std::vector<double>& y, const std::string& xName) {
    if (x.empty())
        return {};
    const std::vector<double> columns = columnsOf(x, y);
    const double highest = *std::max_element(columns.begin(), columns.end());
    if (!(highest > 0.0) || !std::isfinite(highest))
        return {};

    std::string text;
    for (std::size_t row = g_rows; row > 0; --row) {
        // A value is drawn in the rows that it fills by half, and at the foot from a hundredth of the highest on.
        const double part = row == 1 ? 0.01 : (static_cast<double>(row) - 0.5) / static_cast<double>(g_rows);
        const double level = part * highest;
        std::string bars;
        for (const double column : columns)
            bars += column > level ? '|' : ' ';
        bars.erase(bars.find_last_not_of(' ') + 1);
        text += padLeft(row == g_rows ? fixed(highest, 0) : row == 1 ? "0" : "", g_scaleWidth);
        text += " |" + bars + '\n';
    }
    text += std::string(g_scaleWidth + 1, ' ') + '+' + std::string(g_columns, '-') + '\n';
    return text + xScale(x.front(), x.back(), xName);
}

}  // namespace qsf2sql_tool
