#pragma once

#include "projections/TQPrMercator.h"
#include "projections/formulas/DirectMercator.h"
#include "projections/kernels/Forward.h"

/// Direct (normal aspect) Mercator on the ellipsoid, with the latitude of true scale as origin of the
/// northings (EPSG methods 9804 and 9805; Snyder, Map Projections: A Working Manual, pages 38-47).
///
/// Accuracy, as measured beside PROJ (docs/accuracy.md): 12 nm forward, 0.43 µm on the ground back.
/// Domain: latitudes up to 89 degrees, of both ways; a latitude nearer to a pole gets the northing of 89
/// degrees. Longitudes are wrapped: taken to within half a turn of the central meridian. The inverse does not
/// wrap them and iterates the latitude until it changes by 1e-11 rad (0.06 mm) at most.
///
/// Text block: that of TQPrMercator. Archive block "TQPrMercDirect", version 0, around that of TQPrMercator.
class TQPROJECTION_EXPORT TQPrMercDirect : public TQStatedProjection<TQPrMercDirect, TQPrMercator> {
    TQ_PROJECTION(TQPrMercDirect, TQPrMercator, 5, "Direct Mercator")

  public:
    /// A projection with the parameters of TQPrMercator::TQPrMercator().
    TQPrMercDirect();

    /// A copy with its constants computed.
    /// @param other the projection to copy
    TQPrMercDirect(const TQPrMercDirect& other);
    ~TQPrMercDirect() override;

    /// How objects of the class convert many points, and where rightly.
    static const Runs& runs();

    int initConstants() override;
    int convertGeoPt(const TQPoint& geo, TQPoint& global) const override;
    int convertGlobalPt(const TQPoint& global, TQPoint& geo) const override;

  protected:
    tq::formulas::DirectMercator _mercator; ///< what initConstants() derives

  private:
    template <class Class>
    friend class ::TQKernels;

    tq::kernels::DirectMercatorConversion conversion() const;
    TQDomain domain() const;
};
