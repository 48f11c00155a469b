#pragma once

#include "TQProjectionExport.h"
#include "ellipsoid/TQEllipsoid.h"
#include "manager/TQProjParam.h"
#include "projection/TQWktParameter.h"
#include "support/HashTbl.h"
#include "support/TQAnglePoint.h"
#include "support/TQIdentity.h"
#include "support/TQLife.h"
#include "support/TQObject.h"
#include "support/TQOwningSlot.h"
#include "support/TQPoint.h"
#include "support/TQRect.h"
#include "support/TQString.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <typeinfo>

class TQFile;
struct TQDomain;
struct TQProjectionStatement;
class TQReadStream;
class TQUnitConversion;
class TQWriteStream;

/// Writes what every concrete projection class says of itself: its identity, its type code and name,
/// the declaration of its statement (TQStatedProjection), and the entry points of TQProjection that its
/// own conversions would hide. Stands first in the class body.
#define TQ_PROJECTION(Class, Base, code, name)                                                               \
    TQ_IDENTITY(Class, Base)                                                                                 \
    static const TQProjectionStatement& statement();                                                         \
    static constexpr signed char typeCode = code;                                                            \
    signed char projectionType() const override { return typeCode; }                                         \
    TQString typeName() const override { return TQString(name); }                                            \
    using TQProjection::convertGeoPt;                                                                        \
    using TQProjection::convertGlobalPt;                                                                     \
    using TQProjection::isGeoPtValid;

/// Root of every projection: a name, an ellipsoid, the conversions between geographic and plane
/// coordinates, and everything that is made from them.
///
/// Geographic points of the virtual operations are longitude (x) and latitude (y) in radians on the
/// reference datum; global points are metres on the projection plane. The entry points that take
/// TQAnglePoint accept any angular unit.
///
/// A conversion answers 0 for success and -1 for failure, and leaves its output untouched when it fails; of a
/// projection that PROJ computes the output is then infinite. A projection without ellipsoid is legal; native
/// classes then answer -1.
///
/// Formulas go on where they are no longer the projection: they hold latitudes short of the poles, map what
/// is far away onto what is near, lose digits. Conversions answer what they come to, with success. Each class
/// states the domain in which its results are right; whyGeoPtIsBeyondDomain(), whyGlobalPtIsBeyondDomain()
/// and the statuses of conversions of many points tell it. Validity (isGeoPtValid()) is another thing.
/// Longitudes are another turn of the same place only to classes that say that they wrap them;
/// atNearestTurn() leads to the turn that every class takes.
///
/// Objects are meant for one thread at a time.
class TQPROJECTION_EXPORT TQProjection : public TQObject {
    TQ_IDENTITY(TQProjection, TQObject)

  public:
    /// How the images of meridians or parallels look on the plane.
    enum Shape : int {
        StraightLine = 0, ///< a straight line
        CircularArc = 1,  ///< an arc of a circle around center()
        GeneralCurve = 2, ///< any other curve
    };

    /// What became of a point that was converted with many.
    enum Status : signed char {
        Converted = 0,    ///< it has a right result
        Failed = -1,      ///< it has none
        BeyondDomain = 1, ///< its result is what the single call gives, but not right
    };

    /// Converts points in place: longitudes and latitudes in radians to plane points in metres, or back, as
    /// the virtual operations do.
    /// @param projection the projection
    /// @param points the points
    /// @param statuses receives for each point what the virtual operation answers, 0 or -1
    using Run = void (*)(const TQProjection& projection, std::span<TQPoint> points,
                         std::span<signed char> statuses);

    /// The domain of a projection of a class; none when the projection cannot convert.
    using DomainOf = std::optional<TQDomain> (*)(const TQProjection& projection);

    /// How a class converts many points at once, and where rightly.
    struct Runs {
        const std::type_info* type; ///< the class
        Run toPlane;                ///< what convertGeoPt() does one by one
        Run toGeographic;           ///< what convertGlobalPt() does one by one
        DomainOf domain = nullptr;  ///< where its results are right; null for everywhere
    };

    /// A copy of the name and the bookkeeping; the ellipsoid is shared and must outlive the copy.
    /// @param other the projection to copy
    TQProjection(const TQProjection& other);
    ~TQProjection() override;
    TQProjection& operator=(const TQProjection&) = delete;

    /// Whether the other object is a projection of the same name and the same definition.
    /// @param other the object to compare with, or null
    bool isEqual(const TQObject* other) const override;

    /// Writes block "TQProjection", version 1: the name and the ellipsoid's name, also that of one which is
    /// still to be found.
    /// @param stream the stream to write to, not null
    void archiveTo(TQWriteStream* stream) const override;

    /// Reads block "TQProjection" of version 0 or 1. The ellipsoid's name then waits in
    /// pendingEllipsoidName() and the projection has no ellipsoid.
    /// @param stream the stream to read from, not null
    void unarchiveFrom(TQReadStream* stream) override;

    /// Computes what a class derives from its ellipsoid and parameters; without an ellipsoid, what needs
    /// none.
    /// @return 0
    virtual int initConstants();

    /// The part of the WKT between the name and the unit; the root's is the geographic system (GEOGCS),
    /// empty without an ellipsoid. Subclasses append their PROJECTION and PARAMETER items.
    virtual TQString WKTProjectionStuff() const;

    /// The type code, key of files, archives and parameter tables; -1 for a class that has none.
    virtual signed char projectionType() const;

    /// The name of the type, "unknown" for a class that has none.
    virtual TQString typeName() const;

    /// Reads the projection with unarchiveFrom().
    /// @param stream the stream to read from, not null
    /// @return this object
    virtual TQProjection* initFromStream(TQReadStream* stream);

    /// Adds the parameters to a table: "Type", "Nom" and, with an ellipsoid, "Ellipsoide", then the class's
    /// own.
    /// @param table receives the parameters under their names
    virtual void getParams(HashTbl<TQProjParam>& table) const;

    /// Takes the parameters that a table holds; the root takes "Nom".
    /// @param table the parameters under their names
    virtual void setParams(const HashTbl<TQProjParam>& table);

    /// Whether another projection has the same type, an equal ellipsoid (or none either) and, in each
    /// class, the same parameters within their tolerances. Names do not count.
    /// @param other the projection to compare with
    virtual bool hasSameDefinition(const TQProjection& other) const;

    /// Reads the projection's text block from a file. An ellipsoid block without name whose semi-major axis
    /// is 0, as writeToFile() writes it for a projection without ellipsoid, is none.
    /// @param file the file, opened for reading when it is not open yet
    /// @param withHeader whether the block's header line stands in the file
    /// @return 0; 5022 not opened, 5023 no block version, 5024 unknown version, 5025 no name; the
    ///         ellipsoid's codes; or the codes of the class
    virtual int loadFromFile(TQFile& file, bool withHeader);

    /// Writes the projection's text block to a file.
    /// @param file the file, opened for writing when it is not open yet
    /// @param withHeader whether to write the block's header line
    /// @return 0; 5022 not opened, 5027 write failure; the ellipsoid's codes; or the codes of the class
    virtual int writeToFile(TQFile& file, bool withHeader) const;

    /// Converts a geographic point to a global one. The root converts nothing.
    /// @param geo longitude and latitude in radians on the reference datum
    /// @param global receives the plane point in metres; untouched on failure
    /// @return 0, or -1 for failure
    virtual int convertGeoPt(const TQPoint& geo, TQPoint& global) const;

    /// Converts a global point to a geographic one. The root converts nothing.
    /// @param global plane point in metres
    /// @param geo receives longitude and latitude in radians on the reference datum; untouched on failure
    /// @return 0, or -1 for failure
    virtual int convertGlobalPt(const TQPoint& global, TQPoint& geo) const;

    /// The direction of geographic north on the plane, in radians from the global x axis. Places beside the
    /// point are probed; what conversions would say of them is not printed.
    /// @param geo longitude and latitude in radians
    /// @return the direction; 0 for a point that is not valid
    virtual double northAngleAt(const TQPoint& geo) const;

    /// Whether a geographic point may be converted.
    /// @param geo longitude and latitude in radians
    virtual bool isGeoPtValid(const TQPoint& geo) const;

    /// Whether a global point may be converted; always true.
    /// @param global plane point in metres
    virtual bool isGlobalPtValid(const TQPoint& global) const;

    /// How meridians look on the plane, a Shape.
    virtual int meridianShape() const;

    /// How parallels look on the plane, a Shape.
    virtual int parallelShape() const;

    /// The image of the north pole.
    /// @param position receives it
    /// @return false when the class does not know it
    virtual bool northPolePosition(TQPoint& position) const;

    /// The image of the south pole.
    /// @param position receives it
    /// @return false when the class does not know it
    virtual bool southPolePosition(TQPoint& position) const;

    /// The centre of the parallels that are circular arcs; the root reports that it has none and answers
    /// (0, 0).
    virtual TQPoint center() const;

    /// Attaches an ellipsoid and computes the constants for it.
    /// @param ellipsoid the ellipsoid, owned elsewhere, or null
    virtual void setEllipsoid(TQEllipsoid* ellipsoid);

    /// Whether the projection's datum differs from the reference datum: its ellipsoid has a datum shift.
    virtual bool needsDatumShift() const;

    /// The same as needsDatumShift().
    virtual bool hasDatumShift() const;

    /// Whether the projection can convert nothing at all; readers drop such a projection.
    virtual bool isInvalid() const;

    /// The definition as WKT 1.
    ///
    /// The TOWGS84 of a native projection has the seven numbers of the ellipsoid's datum shift as they are
    /// kept: they lead from the reference datum to the local one, and rotations are radians. Other programs
    /// take them for those of the way to WGS 84, with rotations in arc seconds, and miss by hundreds of
    /// metres: 238 m in London with the British National Grid.
    /// @param wkt2 not used by native projections
    virtual TQString wktDefinition(bool wkt2) const;

    /// Converts a geographic point in any angular unit to a global one.
    /// @param geo longitude and latitude on the reference datum; each angle's base-360 flag counts
    /// @param global receives the plane point in metres, or what the virtual operation leaves on failure
    /// @return 0, or -1 for failure
    int convertGeoPt(const TQAnglePoint& geo, TQPoint& global) const;

    /// Converts a global point to a geographic one in any angular unit. A result that is not finite is
    /// reported and becomes (0, 0) with the answer -1.
    /// @param global plane point in metres
    /// @param geo receives longitude and latitude on the reference datum, (0, 0) on failure
    /// @param angleUnit the angular unit wanted
    /// @return 0, or -1 for failure
    int convertGlobalPt(const TQPoint& global, TQAnglePoint& geo, std::uint32_t angleUnit) const;

    /// Why the image of a geographic point is not right, or there is none; the longitude is taken at the
    /// nearest turn. Classes of an application that say nothing of it, and projections that PROJ computes,
    /// have no limits.
    /// @param geoRadians longitude and latitude in radians on the reference datum
    /// @return the end of a sentence, in English ("more than 45 degrees from the central meridian"), of
    ///         static storage; null within the domain and without an ellipsoid
    const char* whyGeoPtIsBeyondDomain(const TQPoint& geoRadians) const;

    /// Why what a plane point is converted back to is not right, or there is none. The point is converted on
    /// the way, which prints nothing.
    /// @param global plane point in metres
    /// @return as for whyGeoPtIsBeyondDomain()
    const char* whyGlobalPtIsBeyondDomain(const TQPoint& global) const;

    /// The same place with its longitude moved by whole turns to within half a turn of the meridian from
    /// which the class counts longitudes. A point that lies there, one of a projection without a domain, one
    /// that is not finite, and one so far around (100000 radians) that a double no longer tells the place
    /// come back as they are.
    /// @param geoRadians longitude and latitude in radians
    TQPoint atNearestTurn(const TQPoint& geoRadians) const;

    /// Converts many geographic points to global ones, as convertGeoPt() does one by one but faster.
    ///
    /// A point that fails, and one whose result is not a number, has the status Failed and comes out as
    /// (NaN, NaN); what becomes of a point does not depend on the others. One that is converted beyond the
    /// domain has the status BeyondDomain and the result of the single call; its longitude is taken as it is.
    /// A message that points give rise to is printed once, however many they are.
    /// @param geo longitudes and latitudes in radians on the reference datum
    /// @param global receives as many plane points in metres; may be the very memory of geo, or memory away
    ///        from it
    /// @param statuses receives for each point a Status; empty when it is not wanted, which saves asking the
    ///        domain
    /// @return how many points were converted, also beyond the domain; 0, and nothing is touched, when the
    ///         spans differ in length or overlap
    std::size_t convertGeoPts(std::span<const TQPoint> geo, std::span<TQPoint> global,
                              std::span<signed char> statuses = {}) const;

    /// convertGeoPts() for points in any angular unit, without base-360 flags.
    /// @param geo longitudes and latitudes on the reference datum
    /// @param angleUnit their unit code
    /// @param global receives as many plane points in metres; may be the very memory of geo
    /// @param statuses receives for each point a Status; empty when it is not wanted
    /// @return how many points were converted
    std::size_t convertGeoPts(std::span<const TQPoint> geo, std::uint32_t angleUnit,
                              std::span<TQPoint> global, std::span<signed char> statuses = {}) const;

    /// Converts many global points to geographic ones, as convertGlobalPt() does one by one but faster. A
    /// result that is not finite is a failure, which is not reported; the rest is as for convertGeoPts().
    /// @param global plane points in metres
    /// @param geo receives as many longitudes and latitudes in radians on the reference datum; may be the
    ///        very memory of global
    /// @param statuses receives for each point a Status; empty when it is not wanted
    /// @return how many points were converted
    std::size_t convertGlobalPts(std::span<const TQPoint> global, std::span<TQPoint> geo,
                                 std::span<signed char> statuses = {}) const;

    /// convertGlobalPts() to points in any angular unit.
    /// @param global plane points in metres
    /// @param geo receives as many longitudes and latitudes on the reference datum; may be the very memory of
    ///        global
    /// @param angleUnit the unit code wanted
    /// @param statuses receives for each point a Status; empty when it is not wanted
    /// @return how many points were converted
    std::size_t convertGlobalPts(std::span<const TQPoint> global, std::span<TQPoint> geo,
                                 std::uint32_t angleUnit, std::span<signed char> statuses = {}) const;

    /// Whether a geographic point in any angular unit may be converted; its base-360 flags do not count.
    /// @param geo longitude and latitude
    bool isGeoPtValid(const TQAnglePoint& geo) const;

    /// The ellipsoid, owned by the ellipsoid registry or, for a projection just read from a file, by this
    /// projection; may be null.
    TQEllipsoid* ellipsoid() const { return _ellipsoid; }

    /// The name; may be null.
    const TQString* name() const { return _name.get(); }

    /// Gives the projection another name. A manager keeps it under the name that it had when it was
    /// registered.
    /// @param name the new name; may be the projection's own
    void rename(const TQString& name);

    /// Whether the name begins with a tab, the mark of projections from PROJ's database.
    bool isExternalProjection() const;

    /// The plane extent of a geographic rectangle: the bounds of a lattice of 100 by 100 points from the
    /// south-west corner on, with the larger of its first two steps as margin on every side.
    /// @param geoMin south-west corner
    /// @param geoMax north-east corner, one lattice step outside the lattice
    /// @return the extent in metres
    TQRect computeKilographicalLimitFromGeo(const TQAnglePoint& geoMin, const TQAnglePoint& geoMax) const;

    /// The direction of the parallel's image at a point, in radians from the global x axis. Of the
    /// conversions on the way nothing is printed.
    /// @param geo longitude and latitude
    /// @return the direction; 0 where there is none
    double parallelTangentAt(const TQAnglePoint& geo) const;

    /// The direction of the meridian's image at a point, in radians from the global x axis, towards the
    /// north. Of the conversions on the way nothing is printed.
    /// @param geo longitude and latitude
    /// @return the direction; 0 where there is none
    double meridianTangentAt(const TQAnglePoint& geo) const;

    /// The name of an ellipsoid that is still to be found, from unarchiveFrom() until the projection is given
    /// an ellipsoid, or none, or reads a file; null otherwise.
    const TQString* pendingEllipsoidName() const { return _pendingEllipsoidName.get(); }

    /// Gives up the name of the ellipsoid that is still to be found; null when there is none.
    std::unique_ptr<TQString> takePendingEllipsoidName();

    /// Attaches an ellipsoid that the projection owns.
    /// @param ellipsoid the ellipsoid
    void setOwnEllipsoid(std::unique_ptr<TQEllipsoid> ellipsoid);

    /// Gives up the ellipsoid that the projection read from a file, which stays attached; null when the
    /// projection owns none.
    std::unique_ptr<TQEllipsoid> releaseOwnedEllipsoid();

    /// A token that expires when the projection is destroyed; see TQOwningSlot.
    std::weak_ptr<const void> lifeToken() const { return _life.token(); }

    /// Whether the projection came with the application's resources; the manager's bookkeeping.
    bool isResource() const { return _isResource; }
    /// Sets what isResource() answers.
    /// @param isResource the new answer
    void setIsResource(bool isResource) { _isResource = isResource; }

    /// Whether the projection stands in for a resource of the same name; the manager's bookkeeping.
    bool isUserDefined() const { return _isUserDefined; }
    /// Sets what isUserDefined() answers.
    /// @param isUserDefined the new answer
    void setIsUserDefined(bool isUserDefined) { _isUserDefined = isUserDefined; }

    /// 1 once the manager's file loader has registered the projection, 0 before.
    std::int64_t registrationState() const { return _registrationState; }
    /// Sets what registrationState() answers.
    /// @param state the new answer
    void setRegistrationState(std::int64_t state) { _registrationState = state; }

  protected:
    /// A projection without name and ellipsoid.
    TQProjection();

    /// Says how a class converts many points at once, and where rightly; for each of its constructors, as a
    /// copy may be of another class (TQStatedProjection does it for a class that has `runs()`). Objects of
    /// derived classes, which may convert otherwise, do it one by one unless their class says it too.
    /// @param runs the class and its functions, of static storage
    void setRuns(const Runs& runs) { _runs = &runs; }

    /// Takes the name that an archive holds; carriage returns, the mark of deprecated systems, are left out.
    /// @param name the name, or null for none
    void takeName(std::unique_ptr<TQString> name);

    /// The WKT of a projection: the geographic system, then its PROJECTION and PARAMETER items.
    /// @param projection name of the projection in WKT
    /// @param parameters its parameters in their order
    TQString wktOf(const char* projection, std::initializer_list<TQWktParameter> parameters) const;

    /// Appends PARAMETER items to a WKT text.
    /// @param text the text to append to
    /// @param parameters the parameters in their order
    static void appendWktParameters(TQString& text, std::initializer_list<TQWktParameter> parameters);

    /// First eccentricity of the ellipsoid, which must be attached.
    double eccentricity() const;

    /// Whether a latitude in radians passes a pole by 1e-7 at most.
    /// @param latitude the latitude
    static bool isWithinPoles(double latitude);

  private:
    Runs ownRuns() const;
    std::optional<TQDomain> domain() const;
    std::size_t convertGeoRuns(std::span<const TQPoint> geo, const TQUnitConversion* toRadians,
                               std::span<TQPoint> global, std::span<signed char> statuses) const;
    std::size_t convertGlobalRuns(std::span<const TQPoint> global, std::span<TQPoint> geo,
                                  const TQUnitConversion* fromRadians, std::span<signed char> statuses) const;

    std::unique_ptr<TQString> _name;
    std::int64_t _registrationState = 0;
    TQEllipsoid* _ellipsoid = nullptr; // owned by the registry or by _ownedEllipsoid
    bool _isResource = true;
    bool _isUserDefined = false;
    TQOwningSlot<TQEllipsoid> _ownedEllipsoid;
    std::unique_ptr<TQString> _pendingEllipsoidName;
    const Runs* _runs = nullptr; // of the class that said them last
    TQLife _life;
};
