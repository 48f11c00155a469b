#pragma once

#include "projections/TQPrPolar.h"
#include "projections/kernels/Forward.h"

/// Gnomonic projection of a sphere about a pole: the semi-major axis is the radius, and great circles are
/// straight lines. Eccentricity, datum shift and k0 take no part.
///
/// Accuracy, as measured beside PROJ on the sphere (docs/accuracy.md): 5 nm forward, 0.12 µm next to the
/// equator, 3 nm on the ground back.
/// Domain: the hemisphere of the pole without the equator, where the conversion fails; the other hemisphere
/// comes out through the pole and back on the pole's side. A whole turn of the longitude changes nothing:
/// longitudes are wrapped. The centre itself always comes back as the north pole. An ellipsoid with a datum
/// shift leaves no domain, as the shift takes no part.
///
/// Parameters, text and archive are those of TQPrPolar within blocks "TQPrPolarGnomon" of version 1 and 0.
class TQPROJECTION_EXPORT TQPrPolarGnomon : public TQStatedProjection<TQPrPolarGnomon, TQPrPolar> {
    TQ_PROJECTION(TQPrPolarGnomon, TQPrPolar, 9, "Gnomonic")

  public:
    /// A projection of the north at lambda0 0, with no false origin.
    TQPrPolarGnomon();

    /// A copy.
    TQPrPolarGnomon(const TQPrPolarGnomon&) = default;
    ~TQPrPolarGnomon() override;

    /// How objects of the class convert many points, and where rightly.
    static const Runs& runs();

    /// The geographic system, PROJECTION["Gnomonic"] and the parameters without k0.
    TQString WKTProjectionStuff() const override;

    /// As TQProjection::convertGeoPt(); -1 on the equator, where the sine of the latitude is within 1e-8 of
    /// 0.
    /// @param geo longitude and latitude in radians
    /// @param global receives the plane point in metres; untouched on failure
    int convertGeoPt(const TQPoint& geo, TQPoint& global) const override;
    int convertGlobalPt(const TQPoint& global, TQPoint& geo) const override;

  private:
    friend class ::TQKernels<TQPrPolarGnomon>;

    tq::kernels::PolarGnomonicConversion conversion() const;
    TQDomain domain() const;
};
