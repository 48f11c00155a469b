#pragma once

#include "projections/TQPrMercDirect.h"

/// Direct Mercator whose isometric latitude is taken of the latitude times a factor and divided by it
/// again.
///
/// The factor takes part in the conversions at once; the origin of the northings keeps the one that
/// initConstants() last saw, and tables and files are taken with the constants computed before the factor
/// is. Accuracy and domain are those of TQPrMercDirect, the limit of 89 degrees divided by the factor; a
/// factor below the squared eccentricity has no way back.
///
/// Two definitions are the same with the factors within 1e-5. Text: one more line, the factor, behind the
/// block of TQPrMercator; 5510 when it is missing. Archive block "TQPrMercDirectModified", version 0: that
/// of TQPrMercDirect and the factor.
class TQPROJECTION_EXPORT TQPrMercDirectModified
    : public TQStatedProjection<TQPrMercDirectModified, TQPrMercDirect> {
    TQ_PROJECTION(TQPrMercDirectModified, TQPrMercDirect, 7, "Modified Direct Mercator")

  public:
    /// A projection with the parameters of TQPrMercator::TQPrMercator() and a latitude scale factor of 1.
    TQPrMercDirectModified();

    /// A copy with its constants computed.
    /// @param other the projection to copy
    TQPrMercDirectModified(const TQPrMercDirectModified& other);
    ~TQPrMercDirectModified() override;

    /// How objects of the class convert many points, and where rightly.
    static const Runs& runs();
};
