#pragma once

#include "projections/kernels/Kernels.h"
#include "projections/kernels/Pack.h"

namespace tq::kernels {

static_assert(sizeof(TQPoint) == 2 * sizeof(double), "points are loaded as pairs of doubles");

/// Notes which of the points that were loaded together are special ones.
template <class Lanes>
void noteSpecial(const PackMask<Lanes>& mask, signed char* isSpecial, std::size_t count) {
    const Pack<Lanes> marks = select(mask, Pack<Lanes>(1.0), Pack<Lanes>(0.0));
    TQPoint places[Lanes::count];
    Lanes::store(places, marks.value, marks.value);
    for (std::size_t index = 0; index < count; ++index) {
        if (places[index].x != 0.0) {
            isSpecial[index] = 1;
        }
    }
}

/// Converts as many points as there are lanes, of which the first ones count.
template <class Lanes, Way way, class Conversion>
bool convertPack(const Conversion& conversion, TQPoint* points, signed char* isSpecial, std::size_t count) {
    typename Lanes::Numbers x;
    typename Lanes::Numbers y;
    Lanes::load(points, x, y);
    const auto converted = convertedBy<way>(conversion, Pack<Lanes>::of(x), Pack<Lanes>::of(y));
    if (!anyLane(converted.isSpecial)) {
        Lanes::store(points, converted.x.value, converted.y.value);
        return false;
    }
    Lanes::store(points, select(converted.isSpecial, Pack<Lanes>::of(x), converted.x).value,
                 select(converted.isSpecial, Pack<Lanes>::of(y), converted.y).value);
    noteSpecial(converted.isSpecial, isSpecial, count);
    return true;
}

/// Converts points in place, as many at once as there are lanes. The last pack is filled up with its first
/// point, so that its other lanes do not do without an end what the points never asked for.
template <class Lanes, Way way, class Conversion>
bool runOnPacks(const Conversion& conversion, TQPoint* points, signed char* isSpecial, std::size_t count) {
    bool anySpecial = false;
    std::size_t begin = 0;
    for (; begin + Lanes::count <= count; begin += Lanes::count) {
        anySpecial |= convertPack<Lanes, way>(conversion, points + begin, isSpecial + begin, Lanes::count);
    }
    if (begin < count) {
        TQPoint last[Lanes::count];
        for (std::size_t index = 0; index < Lanes::count; ++index) {
            last[index] = points[begin + index < count ? begin + index : begin];
        }
        anySpecial |= convertPack<Lanes, way>(conversion, last, isSpecial + begin, count - begin);
        for (std::size_t index = begin; index < count; ++index) {
            points[index] = last[index - begin];
        }
    }
    return anySpecial;
}

} // namespace tq::kernels

/// Instantiates a function template of Kernels.h, runOnFour or runOnEight, for every conversion and way.
#define TQ_INSTANTIATE_KERNELS(run)                                                                          \
    TQ_INSTANTIATE_KERNEL(run, TransverseMercatorConversion)                                                 \
    TQ_INSTANTIATE_KERNEL(run, DirectMercatorConversion)                                                     \
    TQ_INSTANTIATE_KERNEL(run, GctpMercatorConversion)                                                       \
    TQ_INSTANTIATE_KERNEL(run, LambertConversion)                                                            \
    TQ_INSTANTIATE_KERNEL(run, BonneConversion)                                                              \
    TQ_INSTANTIATE_KERNEL(run, HotineConversion)                                                             \
    TQ_INSTANTIATE_KERNEL(run, SwissConversion)                                                              \
    TQ_INSTANTIATE_KERNEL(run, CassiniSoldnerConversion)                                                     \
    TQ_INSTANTIATE_KERNEL(run, EquirectangularConversion)                                                    \
    TQ_INSTANTIATE_KERNEL(run, PolarStereographicConversion)                                                 \
    TQ_INSTANTIATE_KERNEL(run, PolarAzimuthalConversion)                                                     \
    TQ_INSTANTIATE_KERNEL(run, PolarGnomonicConversion)
// NOLINTBEGIN(bugprone-macro-parentheses): types stand without parentheses.
#define TQ_INSTANTIATE_KERNEL(run, Conversion)                                                               \
    template bool run<Way::ToPlane>(const Conversion&, TQPoint*, signed char*, std::size_t);                 \
    template bool run<Way::ToGeographic>(const Conversion&, TQPoint*, signed char*, std::size_t);
// NOLINTEND(bugprone-macro-parentheses)
