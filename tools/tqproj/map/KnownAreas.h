#pragma once

#include "tools/tqproj/map/GeographicExtent.h"

#include <map>
#include <optional>
#include <string>

class TQProjection;

/// The areas that projections are meant for, as far as they are known: those of reference systems from PROJ,
/// those of the projection files of the shared directory from its file "resProj/areas.tsv".
///
/// A line of the file is the name of a projection and its west, south, east and north in degrees, separated
/// by tabs; of equal names the first one counts, a line without four such borders does not. Without the file
/// there are no lines.
class KnownAreas {
  public:
    /// Reads the file.
    KnownAreas();

    /// The area of a projection: the area of use of its reference system, or else that of its name, if it is
    /// the projection that comes with the library under it: another definition may be meant for anywhere.
    /// @param projection the projection
    /// @return the area, in longitudes as the projection takes them; nothing when it is not known
    std::optional<GeographicExtent> of(const TQProjection& projection) const;

  private:
    void addLine(const std::string& line);

    std::map<std::string, GeographicExtent> _areas; // by name
};
