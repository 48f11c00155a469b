#include "projection/TQDummyProjection.h"

TQDummyProjection::~TQDummyProjection() = default;

const TQString* tq_nameOf(const TQProjection& projection) {
    const auto* const placeholder = dynamic_cast<const TQDummyProjection*>(&projection);
    const bool standsForAnother =
        placeholder != nullptr && projection.name() == nullptr && !placeholder->requestedName().isEmpty();
    return standsForAnother ? &placeholder->requestedName() : projection.name();
}
