#pragma once

#include "projections/TQPrPolar.h"
#include "projections/kernels/Forward.h"

/// Equidistant azimuthal projection of a sphere about a pole: the semi-major axis is the radius, and the
/// distance from the pole is true. Eccentricity, datum shift and k0 take no part.
///
/// Accuracy, as measured beside PROJ on the sphere (docs/accuracy.md): 6 nm forward, 6 nm on the ground back.
/// Domain: every point but the other pole, which is a circle; on the way back what lies within that. A whole
/// turn of the longitude changes nothing: longitudes are wrapped. The centre itself always comes back as the
/// north pole. An ellipsoid with a datum shift leaves no domain, as the shift takes no part.
///
/// Parameters, text and archive are those of TQPrPolar within blocks "TQPrPolarAzimuthal" of version 1 and 0.
class TQPROJECTION_EXPORT TQPrPolarAzimuthal : public TQStatedProjection<TQPrPolarAzimuthal, TQPrPolar> {
    TQ_PROJECTION(TQPrPolarAzimuthal, TQPrPolar, 10, "Polar Azimuthal")

  public:
    /// A projection of the north at lambda0 0, with no false origin.
    TQPrPolarAzimuthal();

    /// A copy.
    TQPrPolarAzimuthal(const TQPrPolarAzimuthal&) = default;
    ~TQPrPolarAzimuthal() override;

    /// How objects of the class convert many points, and where rightly.
    static const Runs& runs();

    /// The geographic system, PROJECTION["Lambert_Azimuthal_Equal_Area"], which the projection is not, and
    /// the parameters without k0.
    TQString WKTProjectionStuff() const override;

    int convertGeoPt(const TQPoint& geo, TQPoint& global) const override;
    int convertGlobalPt(const TQPoint& global, TQPoint& geo) const override;

  private:
    friend class ::TQKernels<TQPrPolarAzimuthal>;

    tq::kernels::PolarAzimuthalConversion conversion() const;
    TQDomain domain() const;
};
