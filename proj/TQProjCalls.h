#pragma once

#include "proj/TQProjHandles.h"
#include "support/TQPoint.h"
#include "support/TQString.h"

#include <proj.h>
#include <span>
#include <string>

/// Whose word a definition is.
enum class TQProjTrust {
    Full, ///< that of the user or the application: PROJ opens whatever it names
    None  ///< that of a file or a document: PROJ finds its own data alone
};

/// A new context that writes nothing to the error output: what goes wrong is reported by its owner.
/// @param trust whose definitions it is for
/// @param log where PROJ's first message goes, emptied before; must outlive the context. To have a later
///        first message, empty it again.
TQProjContextHandle tq_newProjContext(TQProjTrust trust, std::string& log);

/// What PROJ makes of a definition; null when it makes nothing of it.
/// @param context the context of the object
/// @param definition an authority's code, a PROJ string, WKT, or anything else that PROJ takes
TQProjHandle tq_newProjObject(pj_ctx* context, const TQString& definition);

/// The operation between two reference systems with the longitude first and angles in degrees; null when
/// PROJ finds none.
/// @param context the context of all
/// @param source,target the systems
TQProjHandle tq_newProjTransformation(pj_ctx* context, const PJconsts* source, const PJconsts* target);

/// Whether an operation takes coordinates on one datum for those on another, as PROJ knows no transformation
/// between the datums. Of an operation that stands for several, each in its area: false.
/// @param context the context of the operation
/// @param operation the operation, or null
bool tq_isBallpark(pj_ctx* context, const PJconsts* operation);

/// Why a point is refused for which tq_wasBallpark().
inline constexpr const char* tq_noTransformationHere = "no transformation between the datums is known here";

/// Whether an operation was such a one for its last point, be it by itself or as one of several.
/// @param context the context of the operation
/// @param operation the operation, which has converted a point
bool tq_wasBallpark(pj_ctx* context, PJconsts* operation);

/// The unit of a geographic system's longitudes and latitudes in degrees: 0.9 for one in grads, 1 for one in
/// degrees and for anything that is no geographic system.
/// @param context the context of the system
/// @param system the system, or null
double tq_angularUnitInDegrees(pj_ctx* context, const PJconsts* system);

/// The prime meridian of a geodetic system in degrees from Greenwich; 0 for none.
/// @param context the context of the system
/// @param system the system, or null
double tq_primeMeridian(pj_ctx* context, const PJconsts* system);

/// The name of a geodetic system, or that of its datum where the system has none; empty where neither has.
/// @param context the context of the system
/// @param system the system, or null
TQString tq_geodeticName(pj_ctx* context, const PJconsts* system);

/// The unit of a reference system's coordinates on a plane in metres: 0.3048 for one in feet; 1 for one in
/// metres and for anything whose axes do not span a plane.
/// @param context the context of the system
/// @param system the system, without vertical part, or null
double tq_lengthUnitInMetres(pj_ctx* context, const PJconsts* system);

/// The horizontal part of a reference system: the first part of a compound one, the system that a bound one
/// is of. Null for null.
/// @param context the context of the system
/// @param system the system, or null
TQProjHandle tq_horizontalSystem(pj_ctx* context, const PJconsts* system);

/// The squared eccentricity of the ellipsoid of a geodetic system; 0 for a sphere.
/// @param context the context of the system
/// @param system the system, or null
double tq_eccentricitySquared(pj_ctx* context, const PJconsts* system);

/// The area that a reference system is meant for.
/// @param context the context of the system
/// @param system the system, or null
/// @param southWest,northEast receive its corners, longitudes and latitudes in degrees from Greenwich on WGS
///        84; untouched when there is none
/// @return whether it is known
bool tq_areaOfUse(pj_ctx* context, const PJconsts* system, TQPoint& southWest, TQPoint& northEast);

/// PROJ's text for an error number; empty for 0.
/// @param context the context of the object that met the error; null when it is gone
/// @param error the number
TQString tq_projErrorText(pj_ctx* context, int error);

/// A text of PROJ, which may be null, as a string.
TQString tq_projText(const char* text);

/// Converts a point in the units of an operation.
/// @param operation the operation
/// @param direction which way
/// @param point the point; receives the result, which counts only when there is no error
/// @return PROJ's error number for this point, 0 for none
int tq_projTransform(PJconsts* operation, PJ_DIRECTION direction, TQPoint& point);

/// Converts many points in the units of an operation, each with the result that it has alone.
/// @param operation the operation
/// @param direction which way
/// @param points the points; receive the results
/// @param statuses receives for each point 0, or -1 for an error
/// @return PROJ's error number for the first point that has one, 0 for none
int tq_projTransform(PJconsts* operation, PJ_DIRECTION direction, std::span<TQPoint> points,
                     std::span<signed char> statuses);
