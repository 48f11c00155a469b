#pragma once

#include "proj/TQProjHandles.h"
#include "projection/TQProjection.h"

#include <mutex>
#include <span>
#include <string>

/// A projection that PROJ computes: its whole definition is a text that PROJ takes - a PROJ string, an
/// authority's code such as "EPSG:2154", WKT, PROJJSON or a name. Coordinates of geographic systems are
/// degrees, those of projected ones in the system's unit, longitude and easting first. PROJ is given
/// geographic points in degrees, and its results count as degrees, even where the geodetic system is in
/// grads: documents rely on it. angularUnitInDegrees() tells.
///
/// The PROJ objects are built by initFromPROJString() and setParams(). After the projection was read they are
/// built by what needs them first: a conversion, ensureBuilt(), or a question about the reference system,
/// such as angularUnitInDegrees(). isInvalid(), needsDatumShift(), PROJCRSType() and the definitions in
/// PROJ's and WKT's words build nothing: they tell of what is built so far. A projection that cannot be built
/// is invalid: conversions answer -1 and infinite coordinates; the attempt after reading also posts "Invalid
/// projection:" and the name for the user.
///
/// Each object has its own PROJ context and lock. Conversions of one object, ensureBuilt() and questions that
/// build may run in several threads and come one after the other; the other operations must not run beside
/// them. Two objects never wait for each other. Messages go out while the lock is held: an error printer or a
/// handler of the error spool must not call any of these of the same object.
///
/// Definitions may name files, and with "PROJ_NETWORK" addresses. One that was read from a file or an archive
/// is confined: PROJ opens for it only files in the directories that it searches for its own data, such as
/// grids, and fetches nothing. One that was given to initFromPROJString() or, changed, to setParams() is not.
/// A copy is as its original.
///
/// Text block "TQPrProj4 v0": name and definition on a line each; -1 for every failure, also for a text of
/// more than 4096 characters, which a line cannot hold. Archive block "TQPrProj4", version 0: name and
/// definition. Neither holds an ellipsoid, nor whether coordinates are taken on WGS 84. The carriage return
/// that marks the name of a deprecated system is not in the text block, and is left out when an archive is
/// read.
class TQPROJECTION_EXPORT TQPrProj4 : public TQProjection {
    TQ_IDENTITY(TQPrProj4, TQProjection)

  public:
    /// The type code.
    static constexpr signed char typeCode = 127;

    /// A projection without a definition.
    TQPrProj4();

    /// A copy with a context of its own; of a projection that is not built yet, or was read since, one that
    /// is not built.
    /// @param other the projection to copy
    TQPrProj4(const TQPrProj4& other);
    ~TQPrProj4() override;

    using TQProjection::convertGeoPt;
    using TQProjection::convertGlobalPt;
    using TQProjection::isGeoPtValid;

    /// Takes a definition and builds it.
    /// @param definition anything that PROJ takes
    /// @param useWGS84Source whether geographic points are on WGS 84 ("EPSG:4326") rather than on the
    ///        geodetic system of the definition
    /// @return 0, or -1 when PROJ makes no reference system of it (reported)
    int initFromPROJString(const char* definition, bool useWGS84Source);

    /// initFromPROJString() for a definition that neither the user nor the application vouches for: it is
    /// confined.
    /// @param definition anything that PROJ takes
    /// @param useWGS84Source as for initFromPROJString()
    /// @return as for initFromPROJString()
    int initFromForeignText(const char* definition, bool useWGS84Source);

    /// Whether the definition is confined.
    bool isConfined() const { return _isConfined; }

    /// Builds the definition anew, releasing what was built before.
    /// @param useWGS84Source as for initFromPROJString()
    /// @return 0, or -1 when PROJ makes no reference system of it (reported); a system that no
    ///         transformation leads to (reported) answers 0 and is invalid
    int initPROJ(bool useWGS84Source);

    /// Builds what is not built yet, as the first conversion would.
    /// @return whether points can be converted: !isInvalid()
    bool ensureBuilt() const;

    /// The definition as it was given.
    const TQString& definition() const { return _definition; }

    /// The reference system as a PROJ string, bound to WGS 84 where PROJ knows how; empty without one.
    TQString proj4Definition() const;

    /// The reference system as WKT: of the year 2019, or version 1 as GDAL writes it; empty without one, or
    /// when PROJ cannot write it so (reported).
    /// @param wkt2 whether to write that of 2019
    TQString wktDefinition(bool wkt2) const override;

    /// PROJ's type of the reference system: 12 for geographic with two dimensions, 15 for projected, 0 for
    /// any other or none.
    int PROJCRSType() const;

    /// What the coordinates of a reference system are.
    enum class Coordinates {
        Plane,      ///< x and y, in the unit of the system
        Geographic, ///< longitude and latitude, in the unit of the system
        Geocentric  ///< of three axes from the centre of the Earth, of which conversions know two
    };

    /// What the coordinates of the reference system are; those of the horizontal part of a compound one.
    Coordinates coordinates() const;

    /// The name of the reference system as PROJ's database or the definition has it; empty without one.
    TQString systemName() const;

    /// The unit that the geodetic system of geographic points has, in degrees: 1, or 0.9 for grads. A caller
    /// who wants the place that is meant divides longitude and latitude by it before convertGeoPt(), and
    /// multiplies them by it after convertGlobalPt().
    double angularUnitInDegrees() const;

    /// The unit of the coordinates of a geographic reference system in degrees: 1, or 0.9 for grads; 1 where
    /// coordinates are not longitude and latitude, and without a reference system.
    double coordinateUnitInDegrees() const;

    /// The meridian that the longitudes of geographic points are counted from, in degrees from Greenwich: 0
    /// where they are taken on WGS 84, and without a reference system.
    double primeMeridian() const;

    /// The name of the geodetic system of the definition, or that of its datum where the system has none:
    /// "OSGB36"; empty where neither is known, and without a reference system.
    TQString geodeticName() const;

    /// Whether the transformation takes longitude and latitude from one datum for those on the other, as PROJ
    /// knows no shift between them: where WGS 84 and the datum of a definition are to be joined that tells
    /// nothing of it.
    bool isBallpark() const;

    /// Has points refused (reported) that could only be converted as isBallpark() says. Where PROJ chooses
    /// among operations by their areas, that can be so for some points alone. Objects refuse none by
    /// themselves; copies refuse what their originals refuse.
    void refuseBallpark() { _refusesBallpark = true; }

    /// The unit of the plane's coordinates in metres: 0.3048 for feet; 1 where coordinates are not plane, and
    /// without a reference system. Of a compound system, that of its horizontal part.
    double lengthUnitInMetres() const;

    /// The squared eccentricity of the ellipsoid of the reference system; 0 for a sphere, and without a
    /// system.
    double eccentricitySquared() const;

    /// The area that the reference system is meant for, as PROJ's database or the definition has it; that of
    /// the horizontal part where a compound system has none of its own.
    /// @param southWest receives its corner, longitude and latitude in degrees from Greenwich on WGS 84;
    ///        untouched without an area
    /// @param northEast receives the other corner; its longitude is less than that of the first one where the
    ///        area passes the 180th meridian
    /// @return whether the area is known; PROJ strings have none
    bool areaOfUse(TQPoint& southWest, TQPoint& northEast) const;

    /// The code that its authority gave the geodetic reference system of the definition; 0 without one.
    int geodeticCode() const;

    /// PROJ's text for the last error; empty when there was none.
    TQString PROJErrorMessage() const;

    /// What PROJ wrote about its last failure, which often tells more than the text of the error:
    /// "proj_create: crs not found". Empty when it wrote nothing. Not to be called beside conversions.
    TQString PROJLogMessage() const { return TQString(_projLog.c_str()); }

    void archiveTo(TQWriteStream* stream) const override;
    void unarchiveFrom(TQReadStream* stream) override;

    /// Has no parts in this form of WKT.
    /// @return "invalid"
    TQString WKTProjectionStuff() const override;

    signed char projectionType() const override { return typeCode; }
    TQString typeName() const override;

    /// Adds "definition".
    /// @param table receives the parameters under their names
    void getParams(HashTbl<TQProjParam>& table) const override;

    /// Takes "definition" and builds it for points on WGS 84. The definition that the projection has already
    /// stays confined if it is.
    /// @param table the parameters under their names
    void setParams(const HashTbl<TQProjParam>& table) override;

    /// Whether the definitions are the same, letter by letter.
    /// @param other the projection to compare with
    bool hasSameDefinition(const TQProjection& other) const override;

    int loadFromFile(TQFile& file, bool withHeader) override;
    int writeToFile(TQFile& file, bool withHeader) const override;

    /// As TQProjection::convertGeoPt(), in the units of the reference system.
    /// @param geo longitude and latitude in radians
    /// @param global receives the point; infinite on failure, untouched when nothing can be built
    int convertGeoPt(const TQPoint& geo, TQPoint& global) const override;

    /// As TQProjection::convertGlobalPt(), in the units of the reference system.
    /// @param global the point
    /// @param geo receives longitude and latitude in radians; infinite on failure, untouched when nothing
    ///        can be built
    int convertGlobalPt(const TQPoint& global, TQPoint& geo) const override;

    /// What the way back makes of (0, π/2): a quirk that documents rely on.
    /// @param position receives it
    /// @return whether there is such a point
    bool northPolePosition(TQPoint& position) const override;

    /// What the way back makes of (0, -π/2).
    /// @param position receives it
    /// @return whether there is such a point
    bool southPolePosition(TQPoint& position) const override;

    /// There is none (reported).
    /// @return (0, 0)
    TQPoint center() const override;

    /// Does nothing: the definition has its own ellipsoid.
    /// @param ellipsoid not used
    void setEllipsoid(TQEllipsoid* ellipsoid) override;

    /// Whether the geodetic system of the definition has another name than "WGS 84".
    bool needsDatumShift() const override;

    /// Whether geographic points are taken on WGS 84.
    bool hasDatumShift() const override { return _usesWGS84Source; }

    /// Whether there is no reference system or no transformation to it; also true before they are built.
    bool isInvalid() const override;

  private:
    int build(bool useWGS84Source) const;
    void buildTransformation(bool useWGS84Source) const;
    TQProjContextHandle newContext() const;
    void release() const;
    TQProjHandle newSource(bool useWGS84Source) const;
    void report(const char* operation, int error) const;
    bool prepare() const;
    std::unique_lock<std::mutex> lockBuilt() const;
    int transform(int direction, const char* operation, TQPoint& point) const;
    static const Runs& runs();
    void transformRun(int direction, const char* operation, std::span<TQPoint> points,
                      std::span<signed char> statuses) const;
    TQProjHandle horizontalSystem() const;
    TQProjHandle geodeticSystem() const;
    bool polePosition(double latitude, TQPoint& position) const;

    mutable std::mutex _mutex;
    TQString _definition;
    mutable std::string _projLog; // written by the context
    mutable TQProjContextHandle _projContext;
    mutable TQProjHandle _projCRS;
    mutable TQProjHandle _projTransform;
    mutable int _projError = 0;
    mutable bool _usesWGS84Source = false;
    mutable bool _projInitialized = false;
    bool _isConfined = false;
    bool _refusesBallpark = false;
};
