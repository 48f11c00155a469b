#pragma once

#include "projection/TQStatedProjection.h"
#include "projections/formulas/Equirectangular.h"
#include "projections/kernels/Forward.h"
#include "support/TQUnit.h"

#include <cstdint>

/// Equirectangular: longitude and latitude as plane coordinates, on a sphere of the ellipsoid's semi-major
/// axis. The parallel of true scale, or the factor of the eastings itself, is free. Without an ellipsoid it
/// passes longitude and latitude on in a unit of angle; with one, metres are multiplied by what a radian is
/// in that unit, 1 for the radian and for lengths.
///
/// Accuracy, as measured beside PROJ on the sphere (docs/accuracy.md): 4 nm forward, 6 nm on the ground back.
/// Domain: latitudes to 89 degrees, which are valid, within half a turn of longitude 0; longitudes are not
/// wrapped.
///
/// Two definitions are the same with the factors of the eastings within 1e-6. Codes of the text block
/// "TQPrEquiRectangular v1": 5022 not opened, 5023 no block version, 5024 unknown version, 5027 write
/// failure, -1 a line missing. Archive block "TQPrEquiRectangular", version 1: factor or parallel, the flag
/// that tells them apart, and the unit; version 0: without the unit, which is the radian.
class TQPROJECTION_EXPORT TQPrEquiRectangular : public TQStatedProjection<TQPrEquiRectangular, TQProjection> {
    TQ_PROJECTION(TQPrEquiRectangular, TQProjection, 11, "EquiRectangular")

  public:
    /// A projection of factor 1, true to scale on the equator.
    /// @param unit unit code of the plane coordinates
    explicit TQPrEquiRectangular(std::uint32_t unit = TQUnitRadian);

    /// A copy with its constants computed.
    /// @param other the projection to copy
    TQPrEquiRectangular(const TQPrEquiRectangular& other);
    ~TQPrEquiRectangular() override;

    /// How objects of the class convert many points, and where rightly.
    static const Runs& runs();

    void archiveTo(TQWriteStream* stream) const override;
    void unarchiveFrom(TQReadStream* stream) override;

    /// Whether type and ellipsoid are the same and the factors of the eastings within 1e-6, whichever way
    /// each is given.
    /// @param other the projection to compare with
    bool hasSameDefinition(const TQProjection& other) const override;

    /// The geographic system, PROJECTION["Equirectangular"], a false origin and central meridian of 0 and
    /// the parallel of true scale; a factor has no name in WKT (reported).
    TQString WKTProjectionStuff() const override;

    int initConstants() override;

    /// As TQProjection::convertGeoPt(); 0 also without an ellipsoid.
    /// @param geo longitude and latitude in radians on the reference datum
    /// @param global receives the plane point
    int convertGeoPt(const TQPoint& geo, TQPoint& global) const override;

    /// As TQProjection::convertGlobalPt(); 0 also without an ellipsoid.
    /// @param global plane point
    /// @param geo receives longitude and latitude in radians on the reference datum
    int convertGlobalPt(const TQPoint& global, TQPoint& geo) const override;

    /// Whether the latitude lies within 89 degrees of the equator.
    /// @param geo longitude and latitude in radians
    bool isGeoPtValid(const TQPoint& geo) const override;

    /// Straight lines.
    int meridianShape() const override { return StraightLine; }

    /// Straight lines.
    int parallelShape() const override { return StraightLine; }

  private:
    friend class ::TQKernels<TQPrEquiRectangular>;

    bool prepareConstants() const { return true; } // an ellipsoid is not needed
    tq::kernels::EquirectangularConversion conversion() const;
    TQDomain domain() const;

    double effectiveFactor() const;
    void setUnit(std::uint32_t unit);

    double factor_phiRef = 1.0; // the factor itself, or the parallel of true scale in degrees
    double _xFactor = 1.0;      // what initConstants() derives
    bool isFactor = true;       // what factor_phiRef is
    std::uint32_t _unit = 0;    // of the plane coordinates
    double _unitsPerRadian = 1.0;
    double _radiansPerUnit = 1.0;
};
