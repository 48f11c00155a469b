#pragma once

#include "projection/TQConicalProjection.h"
#include "projection/TQStatedProjection.h"
#include "projections/formulas/Bonne.h"
#include "projections/kernels/Forward.h"

/// Bonne's equal-area pseudo-conic projection (EPSG method 9827): parallels are arcs around the apex of
/// the cone that touches the ellipsoid at the standard parallel, true to scale. The plane's origin is the
/// standard parallel on the central meridian; there is no false origin.
///
/// Accuracy, as measured beside PROJ (docs/accuracy.md): 0.2 mm both ways within 10 degrees of the standard
/// parallel, 1.4 mm elsewhere, as the meridian arc ends with the sixth power of the eccentricity.
/// Domain: every point within half a turn of the central meridian, from which longitudes are counted without
/// being wrapped; on the way back the points of the plane that are images of such. A standard parallel of 0
/// has no apex and converts to nothing finite. With a southern standard parallel only points of the central
/// meridian come back (formulas/Bonne.h).
///
/// Two definitions are the same with both angles within 1e-6 degrees. Codes of the text block
/// "TQPrBonne v1": 5101 not opened, 5102 no block version, 5103 unknown version, 5104 no lambda0, 5105 no
/// standardParallel, 5106 write failure. Archive block "TQPrBonne", version 0, around that of
/// TQConicalProjection.
class TQPROJECTION_EXPORT TQPrBonne : public TQStatedProjection<TQPrBonne, TQConicalProjection> {
    TQ_PROJECTION(TQPrBonne, TQConicalProjection, 0, "Bonne")

  public:
    /// A projection on the meridian of Greenwich with standard parallel 40.
    TQPrBonne();

    /// A copy with its constants computed.
    /// @param other the projection to copy
    TQPrBonne(const TQPrBonne& other);
    ~TQPrBonne() override;

    /// How objects of the class convert many points, and where rightly.
    static const Runs& runs();

    /// The geographic system, PROJECTION["Bonne"], a false origin of 0 and the parameters.
    TQString WKTProjectionStuff() const override;

    int initConstants() override;
    int convertGeoPt(const TQPoint& geo, TQPoint& global) const override;
    int convertGlobalPt(const TQPoint& global, TQPoint& geo) const override;

  private:
    friend class ::TQKernels<TQPrBonne>;

    tq::kernels::BonneConversion conversion() const;
    TQDomain domain() const;

    double lambda0 = 0.0;           // central meridian, degrees
    double standardParallel = 40.0; // degrees
    tq::formulas::Bonne _bonne;     // what initConstants() derives, with the apex
};
