#pragma once

#include "projections/TQPrMercTransv.h"

/// Universal transverse Mercator: scale factor 0.9996 and false easting 500 km, the central meridian and
/// the hemisphere free. The south has a false northing of 10 000 km. Accuracy and
/// domain are those of TQPrMercTransv.
///
/// Text block "TQPrUtm v2": lambda0 and the hemisphere, 0 for the north and anything else for the south (v1:
/// lambda0 alone); codes: 5401 not opened, 5402 no block version, 5403 unknown version, 5404 no lambda0, 5407
/// no hemisphere, 5406 write failure. Archive block "TQPrUtm", version 1: the base block, lambda0 and Y0;
/// version 0: an integer that is dropped in the place of Y0.
class TQPROJECTION_EXPORT TQPrUtm : public TQStatedProjection<TQPrUtm, TQPrMercTransv, TQProjection> {
    TQ_PROJECTION(TQPrUtm, TQPrMercTransv, 3, "UTM")

  public:
    /// The northern projection with central meridian 0.
    TQPrUtm();
    /// A copy with its constants computed.
    TQPrUtm(const TQPrUtm&) = default;
    ~TQPrUtm() override;

    /// How objects of the class convert many points, and where rightly.
    static const Runs& runs();

    void archiveTo(TQWriteStream* stream) const override;
    void unarchiveFrom(TQReadStream* stream) override;

    /// Adds "lambda0" in degrees and "hemisphere", a Logical that is true in the north.
    /// @param table receives the parameters under their names
    void getParams(HashTbl<TQProjParam>& table) const override;

    /// Takes "lambda0" and "hemisphere", 1 for the north and anything else for the south, and computes the
    /// constants.
    /// @param table the parameters under their names
    void setParams(const HashTbl<TQProjParam>& table) override;

    int loadFromFile(TQFile& file, bool withHeader) override;
    int writeToFile(TQFile& file, bool withHeader) const override;

    /// Whether the latitude lies from 80 degrees south to 84 degrees north; every longitude is accepted.
    /// @param geo longitude and latitude in radians
    bool isGeoPtValid(const TQPoint& geo) const override;

  private:
    bool isNorthern() const { return Y0 == 0.0; }
    void setNorthern(bool northern);
};
