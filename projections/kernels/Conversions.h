#pragma once

#include "ellipsoid/formulas/DatumShift.h"
#include "projections/formulas/Bonne.h"
#include "projections/formulas/CassiniSoldner.h"
#include "projections/formulas/DirectMercator.h"
#include "projections/formulas/Equirectangular.h"
#include "projections/formulas/GctpMercator.h"
#include "projections/formulas/HotineObliqueMercator.h"
#include "projections/formulas/LambertConformalConic.h"
#include "projections/formulas/PolarAzimuthal.h"
#include "projections/formulas/PolarGnomonic.h"
#include "projections/formulas/PolarStereographic.h"
#include "projections/formulas/SwissObliqueMercator.h"
#include "projections/formulas/TransverseMercator.h"

namespace tq::kernels {

using formulas::Geographic;
using formulas::LocalDatum;
using formulas::Mask;
using formulas::Plane;

// What the classes convert with: the formulas, the constants that they take and the datum shift, over the
// arithmetic type. A conversion refers to members of its projection and lives no longer than a call. Where it
// has one more argument, it tells there of the points that are no ordinary ones, which its class sees to.

/// TQPrMercTransv and its restricted forms.
struct TransverseMercatorConversion {
    const formulas::TransverseMercator& series;
    double e;
    LocalDatum datum;

    template <class T>
    Plane<T> toPlane(const Geographic<T>& point) const {
        return series.forward(datum.fromReference(point), e);
    }
    template <class T>
    Geographic<T> toGeographic(const Plane<T>& point) const {
        return datum.toReference(series.inverse(point, e));
    }
};

/// TQPrMercDirect and TQPrMercDirectModified.
struct DirectMercatorConversion {
    const formulas::DirectMercator& mercator;
    double lambda0; ///< radians
    double e;
    double latitudeScaleFactor;
    LocalDatum datum;

    template <class T>
    Plane<T> toPlane(const Geographic<T>& point) const {
        return mercator.forward(datum.fromReference(point), lambda0, e, latitudeScaleFactor);
    }
    template <class T>
    Geographic<T> toGeographic(const Plane<T>& point) const {
        return datum.toReference(mercator.inverse(point, e, latitudeScaleFactor));
    }
};

/// TQPrMercDirectGCTP.
struct GctpMercatorConversion {
    double scale;   ///< metres per radian of longitude
    double lambda0; ///< radians
    double e;
    Plane<double> falseOrigin;
    LocalDatum datum;

    /// The poles are no ordinary points.
    template <class T>
    Plane<T> toPlane(const Geographic<T>& point, Mask<T>& isSpecial) const {
        const Geographic<T> local = datum.fromReference(point);
        isSpecial = formulas::GctpMercator::isPole(local.phi);
        return formulas::GctpMercator::forward(local, lambda0, falseOrigin, scale, e);
    }
    /// Nor are those whose latitude does not converge.
    template <class T>
    Geographic<T> toGeographic(const Plane<T>& point, Mask<T>& isSpecial) const {
        Mask<T> converged(true);
        const Geographic<T> local =
            formulas::GctpMercator::inverse(point, lambda0, falseOrigin, scale, e, converged);
        isSpecial = !converged;
        return datum.toReference(local);
    }
};

/// TQPrLambert.
struct LambertConversion {
    const formulas::LambertConformalConic& cone;
    Plane<double> apex;
    LocalDatum datum;

    template <class T>
    Plane<T> toPlane(const Geographic<T>& point) const {
        return cone.forward(datum.fromReference(point), apex);
    }
    template <class T>
    Geographic<T> toGeographic(const Plane<T>& point) const {
        return datum.toReference(cone.inverse(point, apex));
    }
};

/// TQPrBonne.
struct BonneConversion {
    const formulas::Bonne& bonne;
    LocalDatum datum;

    template <class T>
    Plane<T> toPlane(const Geographic<T>& point) const {
        return bonne.forward(datum.fromReference(point));
    }
    template <class T>
    Geographic<T> toGeographic(const Plane<T>& point) const {
        return datum.toReference(bonne.inverse(point));
    }
};

/// TQPrObliqueMercator.
struct HotineConversion {
    const formulas::HotineObliqueMercator& hotine;
    LocalDatum datum;

    template <class T>
    Plane<T> toPlane(const Geographic<T>& point) const {
        return hotine.forward(datum.fromReference(point));
    }
    template <class T>
    Geographic<T> toGeographic(const Plane<T>& point) const {
        return datum.toReference(hotine.inverse(point));
    }
};

/// TQPrSwissObliqueMercator. The longitude is counted from the centre before the datum shift, not after it.
struct SwissConversion {
    const formulas::SwissObliqueMercator& swiss;
    Plane<double> falseOrigin;
    LocalDatum datum;

    template <class T>
    Plane<T> toPlane(const Geographic<T>& point) const {
        const Plane<T> image =
            swiss.forward(datum.fromReference(Geographic<T>{point.lambda - swiss._lambda0Rad, point.phi}));
        return {image.x + falseOrigin.x, image.y + falseOrigin.y};
    }
    template <class T>
    Geographic<T> toGeographic(const Plane<T>& point) const {
        const Geographic<T> original =
            datum.toReference(swiss.inverse(Plane<T>{point.x - falseOrigin.x, point.y - falseOrigin.y}));
        return {original.lambda + swiss._lambda0Rad, original.phi};
    }
};

/// TQPrCassiniSoldner.
struct CassiniSoldnerConversion {
    const formulas::CassiniSoldner& cassini;
    Plane<double> falseOrigin;
    LocalDatum datum;

    template <class T>
    Plane<T> toPlane(const Geographic<T>& point) const {
        return cassini.forward(datum.fromReference(point), falseOrigin);
    }
    template <class T>
    Geographic<T> toGeographic(const Plane<T>& point) const {
        return datum.toReference(cassini.inverse(point, falseOrigin));
    }
};

/// TQPrEquiRectangular.
struct EquirectangularConversion {
    formulas::Equirectangular forward;
    formulas::Equirectangular inverse;
    LocalDatum datum;

    template <class T>
    Plane<T> toPlane(const Geographic<T>& point) const {
        return forward.forward(datum.fromReference(point));
    }
    template <class T>
    Geographic<T> toGeographic(const Plane<T>& point) const {
        return datum.toReference(inverse.inverse(point));
    }
};

/// TQPrPolarStereo. The latitude is mirrored for the south before the datum shift, not after it; on the way
/// back, too.
struct PolarStereographicConversion {
    const formulas::PolarStereographic& stereographic;
    formulas::PolarPlane plane;
    LocalDatum datum;

    template <class T>
    Plane<T> toPlane(const Geographic<T>& point) const {
        const Geographic<T> mirrored{point.lambda, plane.isNorth ? point.phi : T(-point.phi)};
        return stereographic.forward(datum.fromReference(mirrored), plane);
    }
    /// Points whose latitude does not converge are no ordinary ones.
    template <class T>
    Geographic<T> toGeographic(const Plane<T>& point, Mask<T>& isSpecial) const {
        formulas::Iterated<T> latitude{};
        const auto [lambda, phi] = stereographic.inverse(point, plane, latitude);
        using std::abs;
        const Mask<T> isNumber = abs(latitude.change) >= 0.0;
        isSpecial = !latitude.converged && isNumber;
        return datum.toReference(Geographic<T>{lambda, plane.isNorth ? phi : T(-phi)});
    }
};

/// TQPrPolarAzimuthal, on a sphere without a datum shift.
struct PolarAzimuthalConversion {
    formulas::PolarAzimuthal azimuthal;

    template <class T>
    Plane<T> toPlane(const Geographic<T>& point) const {
        return azimuthal.forward(point);
    }
    template <class T>
    Geographic<T> toGeographic(const Plane<T>& point) const {
        return azimuthal.inverse(point);
    }
};

/// TQPrPolarGnomon, on a sphere without a datum shift.
struct PolarGnomonicConversion {
    formulas::PolarGnomonic gnomonic;

    /// The equator is no ordinary place.
    template <class T>
    Plane<T> toPlane(const Geographic<T>& point, Mask<T>& isSpecial) const {
        return gnomonic.forward(point, isSpecial);
    }
    template <class T>
    Geographic<T> toGeographic(const Plane<T>& point) const {
        return gnomonic.inverse(point);
    }
};

} // namespace tq::kernels
