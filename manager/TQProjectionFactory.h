#pragma once

#include "TQProjectionExport.h"

#include <memory>
#include <string>

class TQProjection;
class TQReadStream;

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

/// What a code of TQProjection::loadFromFile() means.
/// @param typeCode the type code of the projection
/// @param readerCode the code, not 0
/// @return the end of a sentence, in English
TQPROJECTION_EXPORT std::string tq_meaningOfReaderCode(int typeCode, int readerCode);
