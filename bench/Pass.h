#pragma once

#include "support/TQPoint.h"

#include <cstddef>
#include <functional>
#include <span>

/// Converts all points that it is given, in the way that is to be measured. Being called once for many
/// points, it costs a point nothing itself.
using Pass = std::function<void(std::span<const TQPoint> in, std::span<TQPoint> out)>;

/// A pass that converts one point after the other.
/// @param convert makes a point of a point
template <class Convert>
Pass pointByPoint(Convert convert) {
    return [convert](std::span<const TQPoint> in, std::span<TQPoint> out) {
        for (std::size_t i = 0; i < in.size(); ++i) {
            out[i] = convert(in[i]);
        }
    };
}

/// A pass that converts so many points at a time.
/// @param size how many; divides the number of points
/// @param convert converts a span of points into another
template <class Convert>
Pass inBatches(std::size_t size, Convert convert) {
    return [size, convert](std::span<const TQPoint> in, std::span<TQPoint> out) {
        for (std::size_t begin = 0; begin < in.size(); begin += size) {
            convert(in.subspan(begin, size), out.subspan(begin, size));
        }
    };
}
