#pragma once

#include "projections/TQPrMercDirect.h"

/// Direct Mercator whose isometric latitude is taken of the latitude times a factor and divided by it
/// again.
///
/// The factor takes part in the conversions at once; the origin of the northings keeps the one that
/// initConstants() last saw. Domain and accuracy are those of TQPrMercDirect, the limit of 89 degrees
/// divided by the factor.
class TQPROJECTION_EXPORT TQPrMercDirectModified : public TQPrMercDirect {
    TQ_PROJECTION(TQPrMercDirectModified, TQPrMercDirect, 7, "Modified Direct Mercator")

  public:
    /// A projection with the parameters of TQPrMercator::TQPrMercator() and a latitude scale factor of 1.
    TQPrMercDirectModified() = default;

    /// A copy with its constants computed.
    /// @param other the projection to copy
    TQPrMercDirectModified(const TQPrMercDirectModified& other);
    ~TQPrMercDirectModified() override;

    /// Writes block "TQPrMercDirectModified", version 0: that of TQPrMercDirect and the latitude scale
    /// factor.
    /// @param stream the stream to write to, not null
    void archiveTo(TQWriteStream* stream) const override;

    /// Reads block "TQPrMercDirectModified", version 0.
    /// @param stream the stream to read from, not null
    void unarchiveFrom(TQReadStream* stream) override;

    /// Adds the five parameters of the Mercator projections and "_latitudeScaleFactor".
    /// @param table receives the parameters under their names
    void getParams(HashTbl<TQProjParam>& table) const override;

    /// Takes the six parameters. The constants are computed before the latitude scale factor is taken.
    /// @param table the parameters under their names
    void setParams(const HashTbl<TQProjParam>& table) override;

    /// As TQPrMercator::hasSameDefinition(), with the latitude scale factors within 1e-5.
    /// @param other the projection to compare with
    bool hasSameDefinition(const TQProjection& other) const override;

    /// Reads block "TQPrMercator v1" and one more line, the latitude scale factor. The constants are
    /// computed before that line is read.
    /// @param file the file, opened for reading when it is not open yet
    /// @param withHeader whether the block's header line stands in the file
    /// @return 0; 5510 when the last line is missing; or a code of TQPrMercator::loadFromFile()
    int loadFromFile(TQFile& file, bool withHeader) override;

    /// Writes block "TQPrMercator v1" and one more line, the latitude scale factor.
    /// @param file the file, opened for writing when it is not open yet
    /// @param withHeader whether to write the block's header line
    /// @return 0 or a code of TQPrMercator::writeToFile()
    int writeToFile(TQFile& file, bool withHeader) const override;

  private:
    static TQProjectionParameters ownParameters();
};
