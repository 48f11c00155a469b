#pragma once

#include "TQProjectionExport.h"

#include <memory>

class TQEllipsoid;
class TQProjection;
class TQProjParam;
class TQReadStream;
template <class T>
class HashTbl;

/// Makes a projection of a class in its default state.
using TQProjectionMaker = std::unique_ptr<TQProjection> (*)();

/// Lets files, archives and parameter tables know a class of the application by its type code. What belongs
/// to the set-up of a process: before the first file or document is read, and once and for all. May be called
/// in several threads.
/// @param typeCode 0 to 127; neither that of another class, of the library or registered, nor 14, which is
///        kept free
/// @param make makes its projections; what it makes has the type code and is not null
/// @return whether the class is known from now on; false, and nothing has changed, for any other code or
///         function
TQPROJECTION_EXPORT bool tq_registerProjectionClass(int typeCode, TQProjectionMaker make);

/// tq_registerProjectionClass() for a class that has its type code from TQ_PROJECTION.
/// @tparam Class the class, which has a default state
/// @return whether the class is known from now on
template <class Class>
bool tq_registerProjectionClass() {
    return tq_registerProjectionClass(
        Class::typeCode, []() -> std::unique_ptr<TQProjection> { return std::make_unique<Class>(); });
}

/// Whether there is a class of a type code. What is written of any other projection nobody could read.
/// @param typeCode a type code, see TQProjection::projectionType()
TQPROJECTION_EXPORT bool tq_isProjectionTypeKnown(int typeCode);

/// Makes a projection of a type code in its class's default state; the one place that knows all classes.
/// @param typeCode a type code, see TQProjection::projectionType()
/// @return the projection, or null for a code that no class has
TQPROJECTION_EXPORT std::unique_ptr<TQProjection> tq_newProjectionOfType(int typeCode);

/// Makes a projection of a type code and lets it read its archive. A Gauss-Krüger of an old document that is
/// none (TQPrGaussKruger::isGeneral()) comes back as a transverse Mercator.
/// @param typeCode a type code
/// @param stream the stream to read from
/// @return the projection, half read when the stream has failed; null for a code that no class has
TQPROJECTION_EXPORT std::unique_ptr<TQProjection> tq_unarchivedProjectionOfType(int typeCode,
                                                                                TQReadStream& stream);

/// Gives a projection an ellipsoid, or none, and lets it compute everything that it derives from that. A
/// polar class does not do so by itself (TQPrPolar::computeConstants()): it is the duty of the projection's
/// owner.
/// @param projection the projection
/// @param ellipsoid the ellipsoid, owned elsewhere, or null; also the one that the projection has, after a
///        change
TQPROJECTION_EXPORT void tq_attachEllipsoid(TQProjection& projection, TQEllipsoid* ellipsoid);

/// Gives a projection the parameters of a table, and lets a polar class compute what it derives from them, as
/// tq_attachEllipsoid() does.
/// @param projection the projection
/// @param params the parameters under their names, without the ellipsoid
TQPROJECTION_EXPORT void tq_takeParams(TQProjection& projection, const HashTbl<TQProjParam>& params);
