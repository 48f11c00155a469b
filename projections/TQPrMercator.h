#pragma once

#include "projection/TQStatedProjection.h"

/// What the Mercator projections, direct and transverse, have in common: the five defining parameters
/// and everything that depends on them alone. It converts nothing itself.
///
/// Two definitions are the same with lambda0 and phi0 within 1e-6 degrees, X0 and Y0 within 1 m and k0
/// within 1e-5. Codes of the text block "TQPrMercator v1": 5501 not opened, 5502 no block version, 5503
/// unknown version, 5504 to 5508 the parameter whose line is missing, 5509 write failure. Archive block
/// "TQPrMercator", version 0.
class TQPROJECTION_EXPORT TQPrMercator : public TQStatedProjection<TQPrMercator, TQProjection> {
    TQ_IDENTITY(TQPrMercator, TQProjection)

  public:
    /// What the class states.
    static const TQProjectionStatement& statement();

    /// A projection at (0, 0) with a false easting of 500 km and no scaling.
    TQPrMercator() = default;

    /// A copy of the name, the ellipsoid and the five parameters.
    /// @param other the projection to copy
    TQPrMercator(const TQPrMercator& other);
    ~TQPrMercator() override;

    /// The geographic system, PROJECTION["Mercator_1SP"] and the five parameters; the scale factor is
    /// divided by the latitude scale factor, which WKT has no name for (reported).
    TQString WKTProjectionStuff() const override;

    /// Whether the latitude passes a pole by 1e-7 rad at most.
    /// @param geo longitude and latitude in radians
    bool isGeoPtValid(const TQPoint& geo) const override;

    /// Straight lines.
    int meridianShape() const override { return StraightLine; }

    /// Straight lines.
    int parallelShape() const override { return StraightLine; }

    using TQProjection::isGeoPtValid;

    /// Code of a writer that cannot write a line of its block.
    static constexpr int writeFailed = 5509;

  protected:
    /// The WKT of a Mercator projection of any aspect: the geographic system, the name and the parameters.
    /// @param projection name of the projection in WKT
    /// @param scaleFactor the scale factor to write
    TQString wktWithParameters(const char* projection, double scaleFactor) const;

    double lambda0 = 0.0;              ///< central meridian, degrees
    double phi0 = 0.0;                 ///< latitude of origin and of true scale, degrees
    double X0 = 500000.0;              ///< false easting, metres
    double Y0 = 0.0;                   ///< false northing, metres
    double k0 = 1.0;                   ///< scale factor
    double _latitudeScaleFactor = 1.0; ///< latitude scale factor, 1 but in the modified direct Mercator
};
