#pragma once

#include <variant>

/// A PARAMETER item of a projection in WKT.
struct TQWktParameter {
    const char* name;                        ///< its name in WKT
    std::variant<double, const char*> value; ///< a number, written with "%.13g", or a text as it stands
};
