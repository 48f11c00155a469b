#pragma once

#include "projections/TQPrMercator.h"
#include "projections/formulas/TransverseMercator.h"
#include "projections/kernels/Forward.h"

/// Transverse Mercator on the ellipsoid with free parameters (EPSG method 9807), by Krüger's series to
/// the eighth power of the eccentricity.
///
/// Accuracy, as measured beside PROJ (docs/accuracy.md): 1 µm forward and 2.1 µm on the ground back within
/// 10 degrees of the central meridian, 0.2 mm and 15 µm within 45, 12 mm and 0.6 mm within 60; beyond, the
/// series break down.
/// Domain: 45 degrees around the central meridian and latitudes to 89 degrees; of the plane as much. Nearer
/// to a pole, or to the points 90 degrees from the central meridian on the equator, the image is held, and
/// what is more than 90 degrees away folds back. A whole turn of the longitude changes nothing on the way to
/// the plane: longitudes are wrapped.
///
/// Text block: that of TQPrMercator. Archive block "TQPrMercTransv", version 1: that of TQPrMercator and the
/// five parameters once more; version 0: the base block and the parameters.
class TQPROJECTION_EXPORT TQPrMercTransv : public TQStatedProjection<TQPrMercTransv, TQPrMercator> {
    TQ_PROJECTION(TQPrMercTransv, TQPrMercator, 4, "Transverse Mercator")

  public:
    /// A projection with the parameters of TQPrMercator::TQPrMercator().
    TQPrMercTransv();

    /// A copy with its constants computed.
    /// @param other the projection to copy
    TQPrMercTransv(const TQPrMercTransv& other);
    ~TQPrMercTransv() override;

    /// How objects of the class convert many points, and where rightly.
    static const Runs& runs();

    void archiveTo(TQWriteStream* stream) const override;
    void unarchiveFrom(TQReadStream* stream) override;

    /// The geographic system, PROJECTION["Transverse_Mercator"] and the five parameters.
    TQString WKTProjectionStuff() const override;

    int initConstants() override;
    int convertGeoPt(const TQPoint& geo, TQPoint& global) const override;
    int convertGlobalPt(const TQPoint& global, TQPoint& geo) const override;

    /// General curves.
    int meridianShape() const override { return GeneralCurve; }

    /// General curves.
    int parallelShape() const override { return GeneralCurve; }

  private:
    template <class Class>
    friend class ::TQKernels;

    tq::kernels::TransverseMercatorConversion conversion() const;
    TQDomain domain() const;

    tq::formulas::TransverseMercator _series; // what initConstants() derives
};
