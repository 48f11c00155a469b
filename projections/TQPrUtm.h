#pragma once

#include "projections/TQPrMercTransv.h"

/// Universal transverse Mercator: scale factor 0.9996 and false easting 500 km, the central meridian and
/// the hemisphere free. The south has a false northing of 10 000 km. Accuracy is that of TQPrMercTransv.
class TQPROJECTION_EXPORT TQPrUtm : public TQPrMercTransv {
    TQ_PROJECTION(TQPrUtm, TQPrMercTransv, 3, "UTM")

  public:
    /// The northern projection with central meridian 0.
    TQPrUtm();
    /// A copy with its constants computed.
    TQPrUtm(const TQPrUtm&) = default;
    ~TQPrUtm() override;

    /// Writes block "TQPrUtm", version 1: the base block, lambda0 and Y0.
    /// @param stream the stream to write to, not null
    void archiveTo(TQWriteStream* stream) const override;

    /// Reads block "TQPrUtm" of version 0 (lambda0 and a number that is dropped) or 1.
    /// @param stream the stream to read from, not null
    void unarchiveFrom(TQReadStream* stream) override;

    /// Adds "lambda0" in degrees and "hemisphere", a Logical that is true in the north.
    /// @param table receives the parameters under their names
    void getParams(HashTbl<TQProjParam>& table) const override;

    /// Takes "lambda0" and "hemisphere", 1 for the north and anything else for the south, and computes the
    /// constants.
    /// @param table the parameters under their names
    void setParams(const HashTbl<TQProjParam>& table) override;

    /// Reads block "TQPrUtm" v1 (lambda0) or v2 (lambda0 and the hemisphere, 0 for the north and anything
    /// else for the south).
    /// @param file the file, opened for reading when it is not open yet
    /// @param withHeader whether the block's header line stands in the file
    /// @return 0; 5401 not opened, 5402 no block version, 5403 unknown version, 5404 no lambda0, 5407 no
    ///         hemisphere; or a code of the base block
    int loadFromFile(TQFile& file, bool withHeader) override;

    /// Writes block "TQPrUtm v2".
    /// @param file the file, opened for writing when it is not open yet
    /// @param withHeader whether to write the block's header line
    /// @return 0; 5401 not opened, 5406 write failure; or a code of the base block
    int writeToFile(TQFile& file, bool withHeader) const override;

    /// Whether the latitude lies from 80 degrees south to 84 degrees north; every longitude is accepted.
    /// @param geo longitude and latitude in radians
    bool isGeoPtValid(const TQPoint& geo) const override;

  private:
    static TQProjectionParameters ownParameters();
    bool isNorthern() const { return Y0 == 0.0; }
    void setNorthern(bool northern);
};
