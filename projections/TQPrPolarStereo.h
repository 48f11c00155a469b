#pragma once

#include "projections/TQPrPolar.h"
#include "projections/formulas/PolarStereographic.h"
#include "projections/kernels/Forward.h"

/// Polar stereographic projection of the ellipsoid with the scale factor at the pole (EPSG method 9810,
/// variant A), used for polar maps and, as universal polar stereographic, beside UTM.
///
/// Accuracy, as measured beside PROJ (docs/accuracy.md): 3 nm forward and 3.5 mm on the ground back within 30
/// degrees of the pole, 38 nm and 43 mm within 150.
/// Domain: every point but the last degree before the other pole (1.5 µm forward there). A whole turn of the
/// longitude changes nothing: longitudes are wrapped. The way back iterates the latitude until it changes by
/// 1e-6 rad (6 m) at most. In the south a false northing leaves the way back no domain, as it is off by twice
/// that northing, and a datum shift neither way, as it is taken at the mirrored latitude.
///
/// Constants are computed by the first conversion after the projection was made, copied or read from an
/// archive, and so by a constant object: one thread at a time. A change of parameters or ellipsoid does
/// not compute them again; computeConstants() does.
class TQPROJECTION_EXPORT TQPrPolarStereo : public TQStatedProjection<TQPrPolarStereo, TQPrPolar> {
    TQ_PROJECTION(TQPrPolarStereo, TQPrPolar, 8, "Polar Stereographic")

  public:
    /// A projection of the north at lambda0 0, with no false origin and scale factor 1.
    TQPrPolarStereo();

    /// A copy that computes its constants when it is used.
    /// @param other the projection to copy
    TQPrPolarStereo(const TQPrPolarStereo& other);
    ~TQPrPolarStereo() override;

    /// How objects of the class convert many points, and where rightly.
    static const Runs& runs();

    void unarchiveFrom(TQReadStream* stream) override;

    /// The geographic system, PROJECTION["Polar_Stereographic"] and the parameters.
    TQString WKTProjectionStuff() const override;

    int convertGeoPt(const TQPoint& geo, TQPoint& global) const override;

    /// As TQProjection::convertGlobalPt(); a latitude that does not converge is reported and kept.
    /// @param global plane point in metres
    /// @param geo receives longitude and latitude in radians on the reference datum
    int convertGlobalPt(const TQPoint& global, TQPoint& geo) const override;

    /// Computes the constants from ellipsoid and scale factor; nothing without an ellipsoid.
    void computeConstants() const override;

  private:
    friend class ::TQKernels<TQPrPolarStereo>;

    tq::kernels::PolarStereographicConversion conversion() const;
    TQDomain domain() const;

    bool prepareConstants() const;

    mutable tq::formulas::PolarStereographic _stereographic; // what computeConstants() derives
};
