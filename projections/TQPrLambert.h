#pragma once

#include "projection/TQConicalProjection.h"
#include "projection/TQStatedProjection.h"
#include "projections/formulas/LambertConformalConic.h"
#include "projections/kernels/Forward.h"

/// Lambert conformal conic: tangent, with one standard parallel and a scale factor (EPSG method 9801), or
/// secant, with two standard parallels (EPSG method 9802). The apex of the cone is the centre of the
/// parallels.
///
/// Accuracy, as measured beside PROJ (docs/accuracy.md): 5 nm forward, 0.15 µm at 80 degrees of the other
/// hemisphere and 1.5 µm at 89; 0.64 mm on the ground back, as the latitude is taken before the pass that
/// would improve it by 1e-10 rad.
/// Domain: every point within half a turn of the central meridian but the last
/// degree before the pole behind the cone; longitudes are not wrapped. The way back knows the half of the
/// plane before the apex only. The equator and the poles have no tangent cone, equal parallels no secant one.
///
/// Two definitions are the same with angles within 1e-6 degrees, X0 and Y0 within 0.01 m, the same form and
/// k0 within 1e-5. Codes of the text block "TQPrLambert v1": 5301 not opened, 5302 no block version, 5303
/// unknown version, 5304 to 5311 the parameter whose line is missing, 5312 write failure. Archive block
/// "TQPrLambert", version 0, around that of TQConicalProjection. Tables, files, archives and copies hold k0
/// for the tangent form alone and stdPar1 and stdPar2 for the secant one.
class TQPROJECTION_EXPORT TQPrLambert : public TQStatedProjection<TQPrLambert, TQConicalProjection> {
    TQ_PROJECTION(TQPrLambert, TQConicalProjection, 2, "Lambert")

  public:
    /// The tangent projection of the "zone II étendue" of France.
    TQPrLambert();

    /// A copy with its constants computed.
    /// @param other the projection to copy
    TQPrLambert(const TQPrLambert& other);
    ~TQPrLambert() override;

    /// How objects of the class convert many points, and where rightly.
    static const Runs& runs();

    /// The geographic system, PROJECTION["Lambert_Conformal_Conic_1SP"] or "..._2SP" and the parameters.
    TQString WKTProjectionStuff() const override;

    int initConstants() override;
    int convertGeoPt(const TQPoint& geo, TQPoint& global) const override;
    int convertGlobalPt(const TQPoint& global, TQPoint& geo) const override;

    /// Straight lines.
    int meridianShape() const override { return StraightLine; }

  private:
    friend class ::TQKernels<TQPrLambert>;

    tq::kernels::LambertConversion conversion() const;
    TQDomain domain() const;

    double lambda0 = 2.337229167;              // central meridian, degrees
    double latitudeOrigin = 46.8;              // degrees
    double X0 = 600000.0;                      // false easting, metres
    double Y0 = 2200000.0;                     // false northing, metres
    bool Tangent = true;                       // whether one parallel is standard
    double k0 = 0.99987742;                    // scale factor, of the tangent form
    double stdPar1 = 0.0;                      // first standard parallel, of the secant form, degrees
    double stdPar2 = 0.0;                      // second standard parallel, of the secant form, degrees
    tq::formulas::LambertConformalConic _cone; // what initConstants() derives, with the apex
};
