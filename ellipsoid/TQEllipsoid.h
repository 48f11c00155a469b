#pragma once

#include "TQProjectionExport.h"
#include "ellipsoid/formulas/DatumShift.h"
#include "support/TQIdentity.h"
#include "support/TQLife.h"
#include "support/TQObject.h"
#include "support/TQString.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

class TQFile;

/// A reference ellipsoid with an optional datum shift that relates its datum to a reference datum.
///
/// Geographic coordinates that an application hands to a projection are on the reference datum; the
/// projection works on the datum of its own ellipsoid. toLocalDatum() and toReferenceDatum() lead from
/// one to the other. Heights are taken as 0 and not kept.
///
/// Accuracy, as measured beside PROJ (docs/accuracy.md): 43 µm for the seven-parameter shift, whose latitude
/// is iterated until it changes by 1e-9 rad (6 mm) at most. The three-parameter shift is the abridged
/// Molodensky formula, within 0.2 m of a geocentric translation by 200 m; it has no meaning at the poles.
class TQPROJECTION_EXPORT TQEllipsoid : public TQObject {
    TQ_IDENTITY(TQEllipsoid, TQObject)

  public:
    /// The kinds of datum shift, as files and archives number them.
    enum DatumShiftKind : std::uint32_t {
        NoDatumShift = tq::formulas::DatumShift::none,                  ///< it is on the reference datum
        ThreeParameterShift = tq::formulas::DatumShift::threeParameter, ///< abridged Molodensky
        SevenParameterShift = tq::formulas::DatumShift::sevenParameter, ///< Helmert
    };

    /// An ellipsoid without name and size, for a reader to fill.
    TQEllipsoid() = default;

    /// An ellipsoid without datum shift.
    /// @param name its name
    /// @param semiMajorAxis in metres
    /// @param eccentricitySquared first eccentricity squared
    TQEllipsoid(const TQString& name, double semiMajorAxis, double eccentricitySquared);

    /// An ellipsoid from a binary archive, block "TQEllipsoid" of version 0, 2, 3 or 4. An unknown
    /// version is reported and leaves the ellipsoid without name and size.
    /// @param stream the stream to read from, not null
    explicit TQEllipsoid(TQReadStream* stream);

    /// A copy of the name, the axes and the fields of the kind of datum shift.
    /// @param other the ellipsoid to copy
    TQEllipsoid(const TQEllipsoid& other);
    TQEllipsoid& operator=(const TQEllipsoid&) = delete;
    ~TQEllipsoid() override;

    /// Whether the other object is an ellipsoid of the same name, axes within 1 m, squared
    /// eccentricities within 1e-7 and an equal datum shift: reference axis and translation within 1 m,
    /// reference flattening within 1e-8, rotations within 1e-12 rad, scale within 1e-6 ppm.
    /// @param other the object to compare with, or null
    bool isEqual(const TQObject* other) const override;

    /// Whether another ellipsoid has the same name and, without any tolerance, the same axes and datum shift.
    /// @param other the ellipsoid to compare with
    bool isIdentical(const TQEllipsoid& other) const;

    /// Writes block "TQEllipsoid", version 4.
    /// @param stream the stream to write to, not null
    void archiveTo(TQWriteStream* stream) const override;

    /// Reads the text block "TQEllipsoid v1" or "TQEllipsoid v2".
    /// @param file the file to read, opened here when it is not open yet
    /// @return 0, or 5001 not opened, 5002 no block version, 5003 unknown version, 5004 no name, 5005
    ///         no semi-major axis, 5006 no squared eccentricity, 5008 a later line missing
    int loadFromFile(TQFile& file);

    /// Writes the text block "TQEllipsoid v2".
    /// @param file the file to write, opened here when it is not open yet
    /// @return 0, or 5001 not opened, 5007 failure up to the squared eccentricity, 5008 failure later
    int writeToFile(TQFile& file) const;

    /// Converts a geographic point from the reference datum to this ellipsoid's, in place.
    /// @param longitude in radians
    /// @param latitude in radians
    void toLocalDatum(double& longitude, double& latitude) const;

    /// Converts a geographic point from this ellipsoid's datum to the reference datum, in place.
    /// @param longitude in radians
    /// @param latitude in radians
    void toReferenceDatum(double& longitude, double& latitude) const;

    /// The datum beside the reference datum, for formulas; valid as long as the ellipsoid is and as it is.
    tq::formulas::LocalDatum datum() const { return {_shift, _semiMajorAxis, _eccentricitySquared}; }

    /// The name; null before loading.
    const TQString* name() const { return _name.get(); }
    /// The semi-major axis a in metres.
    double semiMajorAxis() const { return _semiMajorAxis; }
    /// The first eccentricity squared, e².
    double eccentricitySquared() const { return _eccentricitySquared; }
    /// The inverse flattening 1/(1 - sqrt(1 - e²)); infinite for a sphere.
    double inverseFlattening() const;
    /// Whether there is a datum shift.
    bool hasDatumShift() const { return _shift.kind != NoDatumShift; }
    /// The kind of datum shift, a DatumShiftKind.
    std::uint32_t datumShiftKind() const { return _shift.kind; }

    /// The seven numbers of a datum shift from the reference datum to the local one: dx, dy, dz in
    /// metres, rx, ry, rz in radians, scale difference in parts per million.
    using DatumShiftParameters = std::array<double, 7>;

    /// The parameters of the datum shift; those that its kind does not have are 0.
    DatumShiftParameters datumShiftParameters() const;
    /// The semi-major axis of the reference ellipsoid of the datum shift in metres, 0 without one.
    double refSemiMajorAxis() const { return _shift.refSemiMajorAxis; }
    /// The flattening of the reference ellipsoid of the datum shift, 0 without one.
    double refFlattening() const { return _shift.refFlattening; }

    /// Gives the ellipsoid a datum shift.
    /// @param kind the kind; NoDatumShift takes the shift away
    /// @param refSemiMajorAxis semi-major axis of the reference ellipsoid in metres
    /// @param refFlattening flattening of the reference ellipsoid
    /// @param parameters the shift; those that the kind does not have are ignored
    void setDatumShift(DatumShiftKind kind, double refSemiMajorAxis, double refFlattening,
                       const DatumShiftParameters& parameters);

    /// Gives the ellipsoid another name. A registered ellipsoid keeps its name.
    /// @param name the new name
    void rename(const TQString& name) { _name = std::make_unique<TQString>(name); }

    /// Gives the ellipsoid other axes. The parameters of its datum shift stay as they are; what is derived
    /// from them and the axes is derived again. Projections keep what they derived from the old axes until
    /// they compute their constants again; a manager sees to it for its own (TQProjMgr::unarchiveFrom()).
    /// @param semiMajorAxis in metres
    /// @param eccentricitySquared first eccentricity squared
    void setAxes(double semiMajorAxis, double eccentricitySquared);

    /// A token that expires when the ellipsoid is destroyed; see TQOwningSlot.
    std::weak_ptr<const void> lifeToken() const { return _life.token(); }

  private:
    struct ShiftField;
    static std::span<const ShiftField> shiftFields(std::uint32_t kind);

    void unarchiveVersion(TQReadStream* stream, int version);
    int loadLines(TQFile& file, int version);
    int loadShiftLines(TQFile& file);
    int writeShiftLines(TQFile& file) const;
    void deriveShift();

    tq::formulas::DatumShift _shift;
    std::unique_ptr<TQString> _name;
    double _semiMajorAxis = 0.0;
    double _eccentricitySquared = 0.0;
    TQLife _life;
};
