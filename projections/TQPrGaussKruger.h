#pragma once

#include "projections/TQPrMercTransv.h"

/// Gauss-Krüger: the transverse Mercator from the equator with scale factor 1, central meridian and false
/// easting free. Accuracy and domain are those of TQPrMercTransv.
///
/// Codes of the text block "TQPrGaussKruger v2" (v1 holds lambda0 alone): 5201 not opened, 5202 no block
/// version, 5203 unknown version, 5204 a line missing, 5209 write failure. Archive block "TQPrGaussKruger",
/// version 2: the base block, lambda0 and X0; version 1: without X0; version 0: lambda0, k0, X0, Y0 and an
/// integer that is dropped.
class TQPROJECTION_EXPORT TQPrGaussKruger
    : public TQStatedProjection<TQPrGaussKruger, TQPrMercTransv, TQProjection> {
    TQ_PROJECTION(TQPrGaussKruger, TQPrMercTransv, 1, "Gauss-Kruger")

  public:
    /// A projection at longitude 0 with a false easting of 500 km.
    TQPrGaussKruger();
    /// A copy with its constants computed.
    TQPrGaussKruger(const TQPrGaussKruger&) = default;
    ~TQPrGaussKruger() override;

    /// How objects of the class convert many points, and where rightly.
    static const Runs& runs();

    void unarchiveFrom(TQReadStream* stream) override;

    /// Whether it is none, having another latitude of origin, false northing or scale factor: an archive of
    /// version 0 may.
    bool isGeneral() const { return phi0 != 0.0 || Y0 != 0.0 || k0 != 1.0; }

    /// False at the two singular points of the projection. The central meridian enters in degrees, where
    /// radians are meant: a quirk that documents rely on.
    /// @param geo longitude and latitude in radians
    bool isGeoPtValid(const TQPoint& geo) const override;
};
