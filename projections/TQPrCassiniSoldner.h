#pragma once

#include "projection/TQStatedProjection.h"
#include "projections/formulas/CassiniSoldner.h"
#include "projections/kernels/Forward.h"

/// Cassini-Soldner: distances along the central meridian and at right angles to it are true (EPSG method
/// 9806), by series in the distance from the central meridian.
///
/// Accuracy, as measured beside PROJ (docs/accuracy.md): 6 nm forward; back 46 mm within 2 degrees of the
/// central meridian, as one coefficient of the way back has another divisor (formulas/CassiniSoldner.h).
/// Beside geodesics across the central meridian, which the series stand for: 2 mm forward and 57 mm back
/// within 3 degrees, 12 mm and 0.14 m within 4.5, up to where grids of EPSG's data set are used. Domain: 4.5
/// degrees around the central meridian and latitudes to 89 degrees; longitudes are not wrapped.
///
/// Two definitions are the same with angles within 1e-6 degrees and X0 and Y0 within 1 m. Text block
/// "TQPrCassiniSoldner v0", which reports every failure as -1; codes of the base block pass through when
/// it is written. Archive block "TQPrCassiniSoldner", version 0.
class TQPROJECTION_EXPORT TQPrCassiniSoldner : public TQStatedProjection<TQPrCassiniSoldner, TQProjection> {
    TQ_PROJECTION(TQPrCassiniSoldner, TQProjection, 13, "Cassini Soldner")

  public:
    /// A projection at (0, 0) with a false easting of 500 km.
    TQPrCassiniSoldner();

    /// A copy with its constants computed.
    /// @param other the projection to copy
    TQPrCassiniSoldner(const TQPrCassiniSoldner& other);
    ~TQPrCassiniSoldner() override;

    /// How objects of the class convert many points, and where rightly.
    static const Runs& runs();

    /// The geographic system, PROJECTION["Cassini_Soldner"] and the parameters.
    TQString WKTProjectionStuff() const override;

    /// Reads block "TQPrCassiniSoldner v0".
    /// @param file the file, opened for reading when it is not open yet
    /// @param withHeader whether the block's header line stands in the file
    /// @return 0, or -1 for any failure
    int loadFromFile(TQFile& file, bool withHeader) override;

    int initConstants() override;
    int convertGeoPt(const TQPoint& geo, TQPoint& global) const override;
    int convertGlobalPt(const TQPoint& global, TQPoint& geo) const override;

    /// Whether the latitude passes a pole by 1e-7 rad at most.
    /// @param geo longitude and latitude in radians
    bool isGeoPtValid(const TQPoint& geo) const override;

  private:
    friend class ::TQKernels<TQPrCassiniSoldner>;

    tq::kernels::CassiniSoldnerConversion conversion() const;
    TQDomain domain() const;

    double lambda0 = 0.0;                  // central meridian, degrees
    double phi0 = 0.0;                     // latitude of origin, degrees
    double X0 = 500000.0;                  // false easting, metres
    double Y0 = 0.0;                       // false northing, metres
    tq::formulas::CassiniSoldner _cassini; // what initConstants() derives
};
