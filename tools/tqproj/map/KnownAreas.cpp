#include "tools/tqproj/map/KnownAreas.h"

#include "proj/TQPrProj4.h"
#include "support/TQFile.h"
#include "support/TQNumberText.h"
#include "support/TQPath.h"
#include "support/TQSharedDirectory.h"
#include "tools/tqproj/ProjectionLibrary.h"

#include <array>
#include <cmath>
#include <sstream>

namespace {

/// An area whose longitudes are counted from another meridian than Greenwich.
GeographicExtent countedFrom(double meridian, const GeographicExtent& area) {
    constexpr double fullCircle = 360.0;
    const double west = std::remainder(area.west - meridian, fullCircle);
    const double width = area.isClosed() ? fullCircle : area.width();
    return {west, area.south, west + width, area.north};
}

/// The area of use of a reference system, in its own longitudes; nothing for a projection that is none, or
/// without one.
std::optional<GeographicExtent> areaOfUse(const TQProjection& projection) {
    const auto* const system = dynamic_cast<const TQPrProj4*>(&projection);
    TQPoint southWest;
    TQPoint northEast;
    if (system == nullptr || !system->areaOfUse(southWest, northEast)) {
        return std::nullopt;
    }
    const auto area = GeographicExtent::of(southWest.x, southWest.y, northEast.x, northEast.y);
    const double meridian = system->primeMeridian();
    return area && meridian != 0.0 ? countedFrom(meridian, *area) : area;
}

/// Whether a projection is the one that comes with the library under its name. Of definitions alone that of
/// a Swiss oblique Mercator is the same anywhere in the world; isEqual() looks at its centre too.
bool isShipped(const TQProjection& projection) {
    ProjectionLibrary library(""); // without a directory of the user's
    const TQProjection* const shipped = library.projection(projection.name()->utf8());
    return shipped != nullptr && shipped->isEqual(&projection);
}

} // namespace

KnownAreas::KnownAreas() {
    TQFile file(tq_createPath(TQGetApplicationSharedDirectory(), "resProj", "areas.tsv"));
    if (file.open(TQFile::Read) != 0) {
        return;
    }
    for (TQString line; file.readLine(line) == 0;) {
        addLine(line.utf8());
    }
}

void KnownAreas::addLine(const std::string& line) {
    std::istringstream columns(line);
    std::string name;
    std::getline(columns, name, '\t');
    std::array<double, 4> borders{};
    for (double& border : borders) {
        std::string text;
        if (!std::getline(columns, text, '\t') || !tq_parseCompleteDouble(text, border)) {
            return;
        }
    }
    const auto [west, south, east, north] = borders;
    if (const auto area = GeographicExtent::of(west, south, east, north)) {
        _areas.try_emplace(name, *area);
    }
}

std::optional<GeographicExtent> KnownAreas::of(const TQProjection& projection) const {
    if (const auto area = areaOfUse(projection)) {
        return area;
    }
    const auto found = projection.name() != nullptr ? _areas.find(projection.name()->utf8()) : _areas.end();
    return found != _areas.end() && isShipped(projection) ? std::optional(found->second) : std::nullopt;
}
