#pragma once

#include "projection/TQDomain.h"
#include "projection/TQProjection.h"
#include "projections/kernels/Kernels.h"
#include "projections/kernels/Pack.h"
#include "projections/kernels/TQInstructionSet.h"
#ifdef TQ_HAS_KERNELS
#include "projections/kernels/OneLane.h"
#endif

#include <algorithm>
#include <cmath>
#include <optional>

/// Converts the points of a class, one or many, by its `conversion()`: the formulas with their constants. It
/// can convert with an ellipsoid, or when its own `prepareConstants()` says so. One point and many go through
/// the same operations, so that they get the same bits. Seen in the sources of the classes alone.
template <class Class>
class TQKernels {
  public:
    using Way = tq::kernels::Way;

    /// A point after a conversion.
    struct Answer {
        TQPoint point;
        bool isSpecial; ///< whether the class has to see to it
    };

    /// What `runs()` of the class answers.
    static const TQProjection::Runs& runs() {
        static const TQProjection::Runs runs{&typeid(Class), &run<Way::ToPlane>, &run<Way::ToGeographic>,
                                             &domainOf};
        return runs;
    }

    /// Converts one point; nothing where the projection cannot convert.
    template <Way way>
    static std::optional<Answer> answer(const Class& projection, const TQPoint& point) {
        if (!canConvert(projection)) {
            return std::nullopt;
        }
        const auto conversion = projection.conversion();
#ifdef TQ_HAS_KERNELS
        if (TQGetInstructionSet() != TQInstructionSet::Baseline) {
            return answerOn<way, tq::kernels::Pack<tq::kernels::OneLane>>(conversion, point);
        }
#endif
        return answerOn<way, double>(conversion, point);
    }

    /// Converts a geographic point of a class that knows no special ones.
    /// @return 0, or -1 where the projection cannot convert
    static int toPlane(const Class& projection, const TQPoint& geo, TQPoint& global) {
        return taken(answer<Way::ToPlane>(projection, geo), global);
    }

    /// The same for a global point.
    static int toGeographic(const Class& projection, const TQPoint& global, TQPoint& geo) {
        return taken(answer<Way::ToGeographic>(projection, global), geo);
    }

  private:
    static bool canConvert(const Class& projection) {
        if constexpr (requires { projection.prepareConstants(); }) {
            return projection.prepareConstants();
        } else {
            return projection.ellipsoid() != nullptr;
        }
    }

    static std::optional<TQDomain> domainOf(const TQProjection& base) {
        const auto& projection = static_cast<const Class&>(base);
        return canConvert(projection) ? std::optional(projection.domain()) : std::nullopt;
    }

    static int taken(const std::optional<Answer>& answer, TQPoint& result) {
        if (!answer) {
            return -1;
        }
        result = answer->point;
        return 0;
    }

    static double number(double value) { return value; }
    template <class Lanes>
    static double number(const tq::kernels::Pack<Lanes>& pack) {
        return pack.value;
    }

    template <Way way, class T, class Conversion>
    static Answer answerOn(const Conversion& conversion, const TQPoint& point) {
        const auto converted = tq::kernels::convertedBy<way, T>(conversion, T(point.x), T(point.y));
        using tq::formulas::anyLane;
        return {{number(converted.x), number(converted.y)}, anyLane(converted.isSpecial)};
    }

    /// Converts a point by the entry point for single points, message and all; one that is no number fails
    /// without.
    template <Way way>
    static void convertSpecial(const Class& projection, TQPoint& point, signed char& status) {
        const TQPoint given = point;
        if (std::isnan(given.x) || std::isnan(given.y)) {
            status = -1;
        } else if constexpr (way == Way::ToPlane) {
            status = static_cast<signed char>(projection.Class::convertGeoPt(given, point));
        } else {
            status = static_cast<signed char>(projection.Class::convertGlobalPt(given, point));
        }
    }

    /// Converts a run of points in place, those that are special alone.
    template <Way way>
    static void run(const TQProjection& base, std::span<TQPoint> points, std::span<signed char> statuses) {
        const auto& projection = static_cast<const Class&>(base);
        const bool can = canConvert(projection);
        std::ranges::fill(statuses, static_cast<signed char>(can ? 0 : -1));
        if (!can || !runTogether<way>(projection.conversion(), points, statuses)) {
            return;
        }
        for (std::size_t index = 0; index < points.size(); ++index) {
            if (statuses[index] != 0) {
                convertSpecial<way>(projection, points[index], statuses[index]);
            }
        }
    }

    /// Converts the ordinary points of a run on the instruction set in use.
    /// @return whether there are special ones, whose statuses are 1
    template <Way way, class Conversion>
    static bool runTogether(const Conversion& conversion, std::span<TQPoint> points,
                            std::span<signed char> statuses) {
#ifdef TQ_HAS_KERNELS
        switch (TQGetInstructionSet()) {
        case TQInstructionSet::AVX512:
            return tq::kernels::runOnEight<way>(conversion, points.data(), statuses.data(), points.size());
        case TQInstructionSet::AVX2:
            return tq::kernels::runOnFour<way>(conversion, points.data(), statuses.data(), points.size());
        case TQInstructionSet::Baseline:
            break;
        }
#endif
        bool anySpecial = false;
        for (std::size_t index = 0; index < points.size(); ++index) {
            const Answer answer = answerOn<way, double>(conversion, points[index]);
            if (answer.isSpecial) {
                statuses[index] = 1;
                anySpecial = true;
            } else {
                points[index] = answer.point;
            }
        }
        return anySpecial;
    }
};
