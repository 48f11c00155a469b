#pragma once

#include "proj/TQProjHandles.h"
#include "support/TQPoint.h"
#include "support/TQString.h"

#include <mutex>
#include <string>

enum class TQProjTrust;
class TQReadStream;
class TQWriteStream;

/// Transforms geographic points from one geographic reference system to another and back, by PROJ.
///
/// A system is anything that PROJ takes for a geographic one with two dimensions: an authority's code, WKT,
/// or a PROJ string with "+type=crs" and without "+towgs84", which would bind it to another. An object whose
/// systems cannot be built, or that no transformation joins, is in error state (reported): every
/// transformation then answers false and infinite coordinates.
///
/// PROJ is given degrees, and its results count as degrees, even for a system in grads: documents rely on it.
/// sourceUnitInDegrees() and targetUnitInDegrees() tell.
///
/// Each object has its own PROJ context and lock: several threads may share one, and two objects never wait
/// for each other. Messages go out while the lock is held: an error printer must not transform through the
/// same object.
class TQPROJECTION_EXPORT TQGeoCSTrans {
  public:
    /// A transformation between two systems.
    /// @param source,target their definitions; "EPSG:4326" for an empty one
    TQGeoCSTrans(const TQString& source, const TQString& target);

    /// A transformation between two systems.
    /// @param source,target their definitions; "EPSG:4326" for a null or empty one
    TQGeoCSTrans(const char* source, const char* target);

    /// A transformation from "EPSG:4326".
    /// @param target the definition of the target; "EPSG:4326" for an empty one
    explicit TQGeoCSTrans(const TQString& target);

    /// A transformation from "EPSG:4326".
    /// @param target the definition of the target; "EPSG:4326" for a null or empty one
    explicit TQGeoCSTrans(const char* target);

    /// Reads a transformation from its archive block "TQGeoCSTrans", version 0. Of an unknown version
    /// (reported) both definitions are empty, and the object is in error state. For the definitions PROJ
    /// opens only files in the directories that it searches for its own data, and fetches nothing.
    /// @param stream the stream to read from, not null
    explicit TQGeoCSTrans(TQReadStream* stream);

    TQGeoCSTrans(const TQGeoCSTrans&) = delete;
    TQGeoCSTrans(TQGeoCSTrans&&) = delete;
    TQGeoCSTrans& operator=(const TQGeoCSTrans&) = delete;
    TQGeoCSTrans& operator=(TQGeoCSTrans&&) = delete;
    ~TQGeoCSTrans();

    /// Writes block "TQGeoCSTrans", version 0: the two definitions.
    /// @param stream the stream to write to, not null
    void archiveTo(TQWriteStream* stream) const;

    /// Transforms a point from the source to the target.
    /// @param in longitude and latitude in decimal degrees
    /// @param out receives them on the target; infinite on failure
    /// @return whether PROJ met no error; of coordinates that are no numbers it makes others without one
    bool forwardTransformationDecDeg(const TQPoint& in, TQPoint& out);

    /// Transforms a point from the target to the source; as forwardTransformationDecDeg().
    bool inverseTransformationDecDeg(const TQPoint& in, TQPoint& out);

    /// Transforms a point from the source to the target.
    /// @param in longitude and latitude in radians
    /// @param out receives them on the target; infinite on failure
    /// @return whether it could be transformed
    bool forwardTransformationRad(const TQPoint& in, TQPoint& out);

    /// Transforms a point from the target to the source; as forwardTransformationRad().
    bool inverseTransformationRad(const TQPoint& in, TQPoint& out);

    /// Whether there is no transformation.
    bool isInErrorState() const { return !_projTransform; }

    /// Whether every transformation takes longitude and latitude on one datum for those on the other, apart
    /// from prime meridians, as PROJ knows no transformation between the datums. Where it chooses among
    /// operations by their areas, that can be so for some points alone: refuseBallpark().
    bool isBallpark() const { return _isBallpark; }

    /// Has points refused (reported), with projError() 0, that could only be transformed as isBallpark()
    /// says. Objects refuse none by themselves; documents do not keep it.
    void refuseBallpark();

    /// The definition of the source.
    const TQString& sourceDefinition() const { return _sourceDefinition; }

    /// The definition of the target.
    const TQString& targetDefinition() const { return _targetDefinition; }

    /// The unit of the source's longitudes and latitudes in degrees: 1, or 0.9 for grads. A caller who wants
    /// the place that is meant divides the coordinates on the source by it before a forward transformation,
    /// and multiplies them by it after an inverse one.
    double sourceUnitInDegrees() const { return _sourceUnitInDegrees; }

    /// As sourceUnitInDegrees(), for the target and the other way round.
    double targetUnitInDegrees() const { return _targetUnitInDegrees; }

    /// PROJ's last error number; 0 for none, -1 for a system that is not geographic with two dimensions.
    int projError() const { return _projError; }

    /// What PROJ wrote about its last failure, which often tells more than the text of the error:
    /// "proj_create: crs not found". Empty when it wrote nothing. Not to be called beside transformations.
    TQString PROJLogMessage() const { return TQString(_projLog.c_str()); }

  private:
    void _initFromDefinitions(TQProjTrust trust);
    TQProjHandle newSystem(const TQString& definition, const char* role);
    bool _transformationDecDeg(int direction, const TQPoint& in, TQPoint& out);
    bool isRefused();
    bool transformationRad(int direction, const TQPoint& in, TQPoint& out);

    std::mutex _mutex;
    TQString _sourceDefinition;
    TQString _targetDefinition;
    std::string _projLog; // written by the context
    TQProjContextHandle _projContext;
    TQProjHandle _projTransform;
    bool _isBallpark = false;
    bool _refusesBallpark = false;
    int _projError = 0;
    double _sourceUnitInDegrees = 1.0;
    double _targetUnitInDegrees = 1.0;
};
