#pragma once

#include "support/TQUnit.h"
#include "tools/tqproj/NumberFormat.h"
#include "tools/tqproj/PointFilter.h"
#include "tools/tqproj/PointOperation.h"

#include <cstdint>
#include <optional>

/// What every command that converts points was asked for.
struct PointOptions : FilterOptions {
    Direction direction = Direction::Forward; ///< Inverse with --inverse
    std::uint32_t angularUnit = TQUnitDegree; ///< the unit of --unit
    std::optional<int> precision;             ///< decimals of the results, or NumberFormat::fullPrecision
};
