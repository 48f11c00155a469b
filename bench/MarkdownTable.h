#pragma once

#include <cmath>
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

/// Writes a table in Markdown to the standard output, line by line.
class MarkdownTable {
  public:
    /// Writes the head.
    /// @param columns the titles of the columns
    explicit MarkdownTable(const std::vector<std::string>& columns) {
        row(columns);
        row(std::vector<std::string>(columns.size(), "---"));
    }

    /// Writes a line.
    /// @param cells what it says in each column
    void row(const std::vector<std::string>& cells) const {
        for (const std::string& cell : cells) {
            std::printf("| %s ", cell.c_str());
        }
        std::printf("|\n");
    }

    /// The text of a number that was measured; "-" for what was not: 0, and what comes of dividing
    /// with it.
    /// @param number the number
    /// @param decimals how many to write
    static std::string cell(double number, int decimals) {
        constexpr std::size_t enough = 32;
        char text[enough];
        std::snprintf(text, sizeof text, "%.*f", decimals, number);
        return std::isfinite(number) && number > 0.0 ? text : "-";
    }
};
