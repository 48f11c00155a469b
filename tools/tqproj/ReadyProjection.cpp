#include "tools/tqproj/ReadyProjection.h"

#include "proj/TQPrProj4.h"
#include "tools/tqproj/DefinitionText.h"
#include "tools/tqproj/LibraryMessages.h"

namespace {

/// Why PROJ built no system.
std::string reasonOf(const TQPrProj4& system, LibraryMessages& messages) {
    if (system.definition().isEmpty()) {
        return "it has no definition";
    }
    const std::string reason = messages.takeReason(system.PROJLogMessage());
    const bool missesFile =
        reason.find("Cannot open") != std::string::npos || reason.find("File not found") != std::string::npos;
    const bool mayBeElsewhere = missesFile && system.isConfined();
    return (reason.empty() ? "PROJ gives no reason" : reason) +
           (mayBeElsewhere ? " (for a projection file PROJ opens its own data alone)" : "");
}

/// Why PROJ's system is no projection; empty when it is one.
std::string problemOf(const TQPrProj4& system, LibraryMessages& messages) {
    const bool isBuilt = system.ensureBuilt();
    if (std::string problem = problemOfName(system, SystemKind::Any); !problem.empty()) {
        return problem;
    }
    if (!isBuilt) {
        return reasonOf(system, messages);
    }
    const bool isGeocentric = system.coordinates() == TQPrProj4::Coordinates::Geocentric;
    return isGeocentric ? "it is a geocentric system" : "";
}

} // namespace

std::string makeReady(const TQProjection& projection, LibraryMessages& messages) {
    const auto* const system = dynamic_cast<const TQPrProj4*>(&projection);
    std::string problem = system != nullptr ? problemOf(*system, messages) : std::string();
    if (!problem.empty()) {
        messages.take();
    }
    return problem;
}
