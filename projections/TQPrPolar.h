#pragma once

#include "projection/TQStatedProjection.h"
#include "projections/formulas/PolarPlane.h"

/// What the polar projections have in common: the parameters, everything that depends on them alone, and
/// the image of the pole, which is the centre of the parallels. It converts nothing itself.
///
/// Two definitions are the same at the same pole with the false origin within 0.01 m and k0 and lambda0
/// within 1e-6. Text block "TQPrPolar v1", within the block of the class; codes of both: 5022 not opened,
/// 5023 no block version, 5024 unknown version of this block (that of the class is not looked at), 5027
/// write failure, -1 a line missing. Archive block "TQPrPolar", version 0, within that of the class.
class TQPROJECTION_EXPORT TQPrPolar : public TQStatedProjection<TQPrPolar, TQProjection> {
    TQ_ABSTRACT_IDENTITY(TQPrPolar, TQProjection)

  public:
    /// What the class states.
    static const TQProjectionStatement& statement();

    ~TQPrPolar() override;

    /// Not used: no projection of this class is ever made.
    /// @return 0
    signed char projectionType() const override { return 0; }

    /// Reads block "TQPrPolar v1" and computes the constants of the class.
    /// @param file the file, opened for reading when it is not open yet
    /// @param withHeader whether the block's header line stands in the file
    /// @return 0 or a code
    int loadFromFile(TQFile& file, bool withHeader) override;

    /// Straight lines.
    int meridianShape() const override { return StraightLine; }

    /// Circular arcs.
    int parallelShape() const override { return CircularArc; }

    /// The image of the north pole.
    /// @param position receives it
    /// @return false, and the position untouched, for a projection of the south
    bool northPolePosition(TQPoint& position) const override;

    /// The image of the south pole.
    /// @param position receives it
    /// @return false, and the position untouched, for a projection of the north
    bool southPolePosition(TQPoint& position) const override;

    /// The image of the pole.
    TQPoint center() const override;

    /// Computes what a class derives from its ellipsoid and parameters; nothing here.
    virtual void computeConstants() const;

  protected:
    /// A projection of the north at lambda0 0, with no false origin and scale factor 1.
    TQPrPolar() = default;

    /// A copy of the name, the ellipsoid and the parameters.
    /// @param other the projection to copy
    TQPrPolar(const TQPrPolar& other);

    /// Pole, central meridian and false origin for the formulas.
    tq::formulas::PolarPlane plane() const;

    /// A domain around the pole, in which whole turns of the longitude are none.
    /// @param farthest the latitude to which it goes in the other hemisphere, in radians; negative within its
    ///        own
    /// @param beyond what is farther
    TQDomain domainTo(double farthest, const char* beyond) const;

    /// The text block of a class of the family.
    /// @param className the class
    static constexpr TQTextBlock textBlockAround(const char* className) {
        TQTextBlock block = TQProjectionStatement::commonTextBlock(className);
        block.everyVersionIsRead = true;
        return block;
    }

    double falseEasting = 0.0;  ///< metres
    double falseNorthing = 0.0; ///< metres
    double k0 = 1.0;            ///< scale factor at the pole
    double lambda0 = 0.0;       ///< central meridian, degrees
    bool isNorth = true;        ///< whether the pole is the north pole
};
