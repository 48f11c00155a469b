#pragma once

#include "TQProjectionExport.h"

#include <memory>

class TQProjection;

/// Makes a projection of a type code in its class's default state; the one place that knows all classes.
/// @param typeCode a type code, see TQProjection::projectionType()
/// @return the projection, or null for a code that no class has
TQPROJECTION_EXPORT std::unique_ptr<TQProjection> tq_newProjectionOfType(int typeCode);
