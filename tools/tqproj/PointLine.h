#pragma once

#include <string_view>

/// A line of the input taken apart: the two fields of the point, and everything around them, so that the line
/// can be written again with other numbers and otherwise byte for byte as it was.
///
/// Fields are separated by blanks or tabs, by one comma, or by a comma with blanks around it.
struct PointLine {
    std::string_view lead;      ///< a byte-order mark and blanks before the first field
    std::string_view first;     ///< longitude or x; may be empty
    std::string_view separator; ///< between the fields; empty when the line ends after the first
    std::string_view second;    ///< latitude or y; may be empty
    std::string_view rest;      ///< what follows, with its own separator

    /// Takes a line apart.
    /// @param line a line without its line end; the parts refer to its bytes
    explicit PointLine(std::string_view line);

    /// Whether a line is to hold a point: it is neither blank nor a comment, which begins with "#".
    /// @param line a line without its line end
    static bool isPoint(std::string_view line);
};
