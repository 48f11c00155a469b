#pragma once

#include "projection/TQProjection.h"
#include "projection/TQProjectionParameter.h"

/// What the Mercator projections, direct and transverse, have in common: the five defining parameters
/// and everything that depends on them alone. It converts nothing itself.
class TQPROJECTION_EXPORT TQPrMercator : public TQProjection {
    TQ_IDENTITY(TQPrMercator, TQProjection)

  public:
    /// A projection at (0, 0) with a false easting of 500 km and no scaling.
    TQPrMercator() = default;

    /// A copy of the name, the ellipsoid and the five parameters.
    /// @param other the projection to copy
    TQPrMercator(const TQPrMercator& other);
    ~TQPrMercator() override;

    /// Writes block "TQPrMercator", version 0: the base block and the five parameters.
    /// @param stream the stream to write to, not null
    void archiveTo(TQWriteStream* stream) const override;

    /// Reads block "TQPrMercator", version 0.
    /// @param stream the stream to read from, not null
    void unarchiveFrom(TQReadStream* stream) override;

    /// The geographic system, PROJECTION["Mercator_1SP"] and the five parameters; the scale factor is
    /// divided by the latitude scale factor, which WKT has no name for (reported).
    TQString WKTProjectionStuff() const override;

    /// Adds "lambda0" and "phi0" in degrees, "X0" and "Y0" in metres, and "k0".
    /// @param table receives the parameters under their names
    void getParams(HashTbl<TQProjParam>& table) const override;

    /// Takes the five parameters and computes the constants.
    /// @param table the parameters under their names
    void setParams(const HashTbl<TQProjParam>& table) override;

    /// Whether type and ellipsoid are the same, lambda0 and phi0 within 1e-6 degrees, X0 and Y0 within
    /// 1 m and k0 within 1e-5.
    /// @param other the projection to compare with
    bool hasSameDefinition(const TQProjection& other) const override;

    /// Reads block "TQPrMercator v1": the base block and a line for each parameter.
    /// @param file the file, opened for reading when it is not open yet
    /// @param withHeader whether the block's header line stands in the file
    /// @return 0; 5501 not opened, 5502 no block version, 5503 unknown version, 5504 to 5508 the first
    ///         parameter whose line is missing; or a code of the base block
    int loadFromFile(TQFile& file, bool withHeader) override;

    /// Writes block "TQPrMercator v1".
    /// @param file the file, opened for writing when it is not open yet
    /// @param withHeader whether to write the block's header line
    /// @return 0; 5501 not opened, 5509 write failure; or a code of the base block
    int writeToFile(TQFile& file, bool withHeader) const override;

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

    /// The statements of the five parameters.
    static TQProjectionParameters parameters();

    double lambda0 = 0.0;              ///< central meridian, degrees
    double phi0 = 0.0;                 ///< latitude of origin and of true scale, degrees
    double X0 = 500000.0;              ///< false easting, metres
    double Y0 = 0.0;                   ///< false northing, metres
    double k0 = 1.0;                   ///< scale factor
    double _latitudeScaleFactor = 1.0; ///< latitude scale factor, 1 but in the modified direct Mercator
};
