#pragma once

#include "projections/TQPrMercDirect.h"
#include "projections/kernels/Forward.h"

/// Direct Mercator as the General Cartographic Transformation Package of the USGS formulates it: the
/// scale factor takes no part and northings start at the equator.
///
/// Accuracy, as measured beside PROJ (docs/accuracy.md): 12 nm forward, 4.3 µm on the ground back.
/// Domain: every latitude but the poles (within 1e-10 rad), where the conversion fails. Longitudes are
/// wrapped: taken to within half a turn of the central meridian, on the way back of Greenwich. The inverse
/// iterates the latitude until it changes by 1e-10 rad (0.6 mm) at most, 16 passes at the most.
///
/// Text block: that of TQPrMercator. Archive block "TQPrMercDirectGCTP", version 0, around that of
/// TQPrMercDirect.
class TQPROJECTION_EXPORT TQPrMercDirectGCTP : public TQStatedProjection<TQPrMercDirectGCTP, TQPrMercDirect> {
    TQ_PROJECTION(TQPrMercDirectGCTP, TQPrMercDirect, 15, "GCTP Direct Mercator")

  public:
    /// A projection with the parameters of TQPrMercator::TQPrMercator().
    TQPrMercDirectGCTP();

    /// A copy with its constants computed.
    /// @param other the projection to copy
    TQPrMercDirectGCTP(const TQPrMercDirectGCTP& other);
    ~TQPrMercDirectGCTP() override;

    /// How objects of the class convert many points, and where rightly.
    static const Runs& runs();

    /// The WKT of the direct Mercator, which differs in origin and scale (reported).
    TQString WKTProjectionStuff() const override;

    /// Computes the metres per radian of longitude; the scale factor takes no part.
    /// @return 0
    int initConstants() override;

    /// As TQProjection::convertGeoPt(); -1 at the poles, which is reported.
    /// @param geo longitude and latitude in radians on the reference datum
    /// @param global receives the plane point in metres; untouched on failure
    int convertGeoPt(const TQPoint& geo, TQPoint& global) const override;

    /// As TQProjection::convertGlobalPt(); a latitude that does not converge is reported and kept.
    /// @param global plane point in metres
    /// @param geo receives longitude and latitude in radians on the reference datum
    int convertGlobalPt(const TQPoint& global, TQPoint& geo) const override;

  private:
    friend class ::TQKernels<TQPrMercDirectGCTP>;

    tq::kernels::GctpMercatorConversion conversion() const;
    TQDomain domain() const;
};
