#pragma once

#include "projections/TQPrMercTransv.h"

/// Gauss-Krüger: the transverse Mercator from the equator with scale factor 1, central meridian and false
/// easting free. Domain and accuracy are those of TQPrMercTransv.
class TQPROJECTION_EXPORT TQPrGaussKruger : public TQPrMercTransv {
    TQ_PROJECTION(TQPrGaussKruger, TQPrMercTransv, 1, "Gauss-Kruger")

  public:
    /// A projection at longitude 0 with a false easting of 500 km.
    TQPrGaussKruger() = default;
    /// A copy with its constants computed.
    TQPrGaussKruger(const TQPrGaussKruger&) = default;
    ~TQPrGaussKruger() override;

    /// Writes block "TQPrGaussKruger", version 2: the base block, lambda0 and X0.
    /// @param stream the stream to write to, not null
    void archiveTo(TQWriteStream* stream) const override;

    /// Reads block "TQPrGaussKruger" of version 0 (lambda0, k0, X0, Y0 and a number that is dropped),
    /// 1 (lambda0) or 2.
    /// @param stream the stream to read from, not null
    void unarchiveFrom(TQReadStream* stream) override;

    /// Adds "lambda0" in degrees and "X0" in metres.
    /// @param table receives the parameters under their names
    void getParams(HashTbl<TQProjParam>& table) const override;

    /// Takes "lambda0" and "X0" and computes the constants.
    /// @param table the parameters under their names
    void setParams(const HashTbl<TQProjParam>& table) override;

    /// Reads block "TQPrGaussKruger" v1 (lambda0) or v2 (lambda0 and X0).
    /// @param file the file, opened for reading when it is not open yet
    /// @param withHeader whether the block's header line stands in the file
    /// @return 0; 5201 not opened, 5202 no block version, 5203 unknown version, 5204 a line missing; or a
    ///         code of the base block
    int loadFromFile(TQFile& file, bool withHeader) override;

    /// Writes block "TQPrGaussKruger v2".
    /// @param file the file, opened for writing when it is not open yet
    /// @param withHeader whether to write the block's header line
    /// @return 0; 5201 not opened, 5209 write failure; or a code of the base block
    int writeToFile(TQFile& file, bool withHeader) const override;

    /// False at the two singular points of the projection. The central meridian enters in degrees, where
    /// radians are meant: a quirk that documents rely on.
    /// @param geo longitude and latitude in radians
    bool isGeoPtValid(const TQPoint& geo) const override;

  private:
    static TQProjectionParameters ownParameters();
};
