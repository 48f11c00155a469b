#pragma once

#include "projection/TQStatedProjection.h"
#include "projections/formulas/SwissObliqueMercator.h"
#include "projections/kernels/Forward.h"

/// Swiss oblique Mercator: the double projection of the Swiss national surveys (EPSG method 9814, published
/// by swisstopo with rigorous formulas).
///
/// Accuracy, as measured beside PROJ (docs/accuracy.md): 8 nm forward and 8 nm on the ground back in
/// Switzerland, 1.3 µm and 24 nm within 80 degrees of the centre.
/// Domain: 80 degrees around the centre, and of longitude from it; both ways lead through arcsines, which
/// fold what is farther than 90. Longitudes are counted from the centre and not wrapped. A datum shift is
/// applied to the longitude so counted, which is exact only for a centre on the meridian of Greenwich:
/// elsewhere it leaves no domain.
///
/// Two projections of any centre have the same definition (hasSameDefinition()) when type and ellipsoid are
/// the same; they are equal (isEqual()) with equal names, centre and kc within 1e-6 and false origin within
/// 0.01 m. Codes of the text block "TQPrSwissObliqueMercator v1": 5022 not opened, 5023 no block version,
/// 5024 unknown version, 5027 write failure, -1 a line missing. Archive block "TQPrSwissObliqueMercator",
/// version 0.
class TQPROJECTION_EXPORT TQPrSwissObliqueMercator
    : public TQStatedProjection<TQPrSwissObliqueMercator, TQProjection> {
    TQ_PROJECTION(TQPrSwissObliqueMercator, TQProjection, 12, "Swiss Oblique Mercator")

  public:
    /// A projection with all parameters 0.
    TQPrSwissObliqueMercator();

    /// A copy with its constants computed.
    /// @param other the projection to copy
    TQPrSwissObliqueMercator(const TQPrSwissObliqueMercator& other);
    ~TQPrSwissObliqueMercator() override;

    /// How objects of the class convert many points, and where rightly.
    static const Runs& runs();

    /// Whether the other object is a projection of the same name, type, ellipsoid and parameters.
    /// @param other the object to compare with, or null
    bool isEqual(const TQObject* other) const override;

    /// Whether type and ellipsoid are the same. The parameters do not count: a quirk that documents rely on.
    /// @param other the projection to compare with
    bool hasSameDefinition(const TQProjection& other) const override;

    /// The geographic system, PROJECTION["Hotine_Oblique_Mercator"] and the parameters. Longitude and
    /// latitude of the centre stand crosswise and the scale factor is 1: a quirk that documents rely on.
    TQString WKTProjectionStuff() const override;

    int initConstants() override;
    int convertGeoPt(const TQPoint& geo, TQPoint& global) const override;
    int convertGlobalPt(const TQPoint& global, TQPoint& geo) const override;

    /// Straight lines, as which the application draws the slightly curved ones.
    int meridianShape() const override { return StraightLine; }

    /// Straight lines, as which the application draws the slightly curved ones.
    int parallelShape() const override { return StraightLine; }

  private:
    friend class ::TQKernels<TQPrSwissObliqueMercator>;

    tq::kernels::SwissConversion conversion() const;
    TQDomain domain() const;

    double longitudeCenter = 0.0;              // degrees
    double latitudeCenter = 0.0;               // degrees
    double kc = 0.0;                           // scale factor at the centre
    double falseEasting = 0.0;                 // metres
    double falseNorthing = 0.0;                // metres
    tq::formulas::SwissObliqueMercator _swiss; // what initConstants() derives
};
