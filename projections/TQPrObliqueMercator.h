#pragma once

#include "projection/TQStatedProjection.h"
#include "projections/formulas/HotineObliqueMercator.h"
#include "projections/kernels/Forward.h"

#include <cstdint>

/// Oblique Mercator by the projection's centre and the azimuth of its central line, with a rotated grid.
/// With `HotineFlag` the plane is counted from the natural origin (EPSG method 9812, Hotine oblique Mercator
/// variant A), without from the centre (EPSG method 9815, variant B, west of the centre); with
/// `AzimuthAtOriginFlag` the azimuth is that at the natural origin.
///
/// Accuracy, as measured beside PROJ (docs/accuracy.md): 7 nm forward; back, the difference of the bearing of
/// the grid and the azimuth at the natural origin times the radius, 0.13 mm in Malaysia.
/// Domain: 45 degrees of longitude and of latitude around the centre, of both ways; longitudes are not
/// wrapped. The aposphere has a seam and poles farther off.
///
/// The way back takes the bearing of the grid for the azimuth at the natural origin, and without
/// `HotineFlag` the way there adds the centre's distance east of the centre where it takes it off to the
/// west: neither is undone on the way back. Beyond the domain are therefore the way back of a grid whose
/// bearing is not that azimuth to 1e-6 degrees, the way there east of the centre, and both ways where the
/// central line runs south at the centre (an azimuth beyond 90 degrees) and coordinates are counted from it.
/// An azimuth of 90 degrees, to 1e-6 rad, is counted rightly on both sides.
///
/// The constants are computed by the first conversion after the parameters were read, and so by a constant
/// object: one thread at a time.
///
/// Two definitions are the same with the same flags, angles and kc within 1e-6 and false origin within
/// 0.01 m. Text block "TQPrObliqueMercator v1": the flags (1 `HotineFlag`, 2 `AzimuthAtOriginFlag`), then the
/// parameters with six decimals; codes: 5022 not opened, 5023 no block version, 5024 unknown version, 5027
/// write failure, -1 a line missing. Archive block "TQPrObliqueMercator", version 0.
class TQPROJECTION_EXPORT TQPrObliqueMercator : public TQStatedProjection<TQPrObliqueMercator, TQProjection> {
    TQ_PROJECTION(TQPrObliqueMercator, TQProjection, 6, "Oblique Mercator")

  public:
    /// A projection with all parameters 0 and no flag.
    TQPrObliqueMercator();

    /// A copy with its constants computed.
    /// @param other the projection to copy
    TQPrObliqueMercator(const TQPrObliqueMercator& other);
    ~TQPrObliqueMercator() override;

    /// How objects of the class convert many points, and where rightly.
    static const Runs& runs();

    /// The geographic system, PROJECTION["Hotine_Oblique_Mercator"] or ["Oblique_Mercator"] and the
    /// parameters. Longitude and latitude of the centre stand crosswise: a quirk that documents rely on.
    TQString WKTProjectionStuff() const override;

    /// Adds the seven parameters, then "HotineFlag" and "AzimuthAtOriginFlag", each when it is set.
    /// @param table receives the parameters under their names
    void getParams(HashTbl<TQProjParam>& table) const override;

    /// Takes the seven parameters and the flags, which are set when they stand in the table, with any
    /// value, and computes the constants.
    /// @param table the parameters under their names
    void setParams(const HashTbl<TQProjParam>& table) override;

    int initConstants() override;
    int convertGeoPt(const TQPoint& geo, TQPoint& global) const override;
    int convertGlobalPt(const TQPoint& global, TQPoint& geo) const override;

    /// Straight lines, as which the application draws the curved ones.
    int meridianShape() const override { return StraightLine; }

    /// Straight lines, as which the application draws the curved ones.
    int parallelShape() const override { return StraightLine; }

  private:
    friend class ::TQKernels<TQPrObliqueMercator>;

    tq::kernels::HotineConversion conversion() const;
    TQDomain domain() const;

    enum Flag : std::uint32_t {
        HotineFlag = 1,
        AzimuthAtOriginFlag = 2,
        ConstantsAreValid = 0xFFFF0000,
    };
    struct NamedFlag {
        const char* name;
        Flag flag;
    };
    static constexpr NamedFlag namedFlags[] = {{"HotineFlag", HotineFlag},
                                               {"AzimuthAtOriginFlag", AzimuthAtOriginFlag}};

    bool has(Flag flag) const { return (_flags & flag) != 0; }
    void computeConstants() const;
    bool prepareConstants() const;

    double longitudeCenter = 0.0;                        // degrees
    double latitudeCenter = 0.0;                         // degrees
    double azimuth = 0.0;                                // of the central line, degrees
    double bearing = 0.0;                                // of the grid, degrees
    double kc = 0.0;                                     // scale factor on the central line
    double falseEasting = 0.0;                           // metres
    double falseNorthing = 0.0;                          // metres
    mutable std::uint32_t _flags = 0;                    // of Flag
    mutable tq::formulas::HotineObliqueMercator _hotine; // valid with ConstantsAreValid
};
