#pragma once

#include "support/TQPoint.h"

#include <optional>
#include <string_view>

/// A part of the world between two meridians and two parallels, in degrees. It may pass the 180th meridian:
/// the east is then greater than 180.
struct GeographicExtent {
    double west = -180.0; ///< longitude, -180 to 180
    double south = -90.0; ///< latitude
    double east = 180.0;  ///< longitude, greater than the west by 360 at most
    double north = 90.0;  ///< latitude, greater than the south

    /// The extent between four borders. An east that is not greater than the west is taken to lie beyond the
    /// 180th meridian.
    /// @param west,south,east,north longitudes and latitudes
    /// @return the extent; nothing when there is none with these borders, or one of less than a millionth of
    /// a degree
    static std::optional<GeographicExtent> of(double west, double south, double east, double north);

    /// Reads an extent as the command line gives it: "west,south,east,north", as of() takes them.
    /// @param text the text
    /// @return the extent; nothing when the text is none
    static std::optional<GeographicExtent> fromText(std::string_view text);

    /// The distance from west to east.
    double width() const { return east - west; }

    /// The distance from south to north.
    double height() const { return north - south; }

    /// Whether the extent goes all around the world.
    bool isClosed() const { return east == west + 360.0; }

    /// The longitude of a point as it counts from the west on.
    /// @param longitude any longitude
    double longitudeFromWest(double longitude) const;

    /// Whether a point lies in the extent or on its border, or no farther off than roundings lead: a
    /// millionth of a degree.
    /// @param point longitude and latitude
    bool contains(const TQPoint& point) const;
};
