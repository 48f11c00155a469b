#include "tools/tqproj/ReadyProjection.h"

#include "proj/TQPrProj4.h"
#include "tools/tqproj/DefinitionText.h"
#include "tools/tqproj/LibraryMessages.h"

namespace {

/// Why PROJ's system is no projection; empty when it is one.
std::string problemOf(const TQPrProj4& system, LibraryMessages& messages) {
    const bool isBuilt = system.ensureBuilt();
    if (const std::string problem = problemOfName(system, SystemKind::Any); !problem.empty()) {
        return problem;
    }
    if (!isBuilt) {
        return messages.takeReason(system.PROJLogMessage());
    }
    const bool isGeocentric = system.coordinates() == TQPrProj4::Coordinates::Geocentric;
    return isGeocentric ? "it is a geocentric system" : "";
}

} // namespace

std::string makeReady(const TQProjection& projection, LibraryMessages& messages) {
    const auto* const system = dynamic_cast<const TQPrProj4*>(&projection);
    const std::string problem = system != nullptr ? problemOf(*system, messages) : std::string();
    if (!problem.empty()) {
        messages.take();
    }
    return problem;
}
