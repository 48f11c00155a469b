#pragma once

#include "tools/tqproj/AngularText.h"
#include "tools/tqproj/NumberFormat.h"

#include <string>
#include <string_view>
#include <variant>

/// The coordinates of one side of a conversion to and from text: angles, or plane numbers.
class CoordinateText {
  public:
    /// A geographic side.
    /// @param angular how its angles are read and written
    CoordinateText(const AngularText& angular) : _form(angular) {}

    /// A plane side.
    /// @param plane how its numbers are written
    CoordinateText(const NumberFormat& plane) : _form(plane) {}

    /// Reads a coordinate.
    /// @param text the whole field
    /// @param axis longitude for the first coordinate, latitude for the second
    /// @param value receives the coordinate, perhaps infinite or NaN
    /// @return whether the whole field is a coordinate
    bool parse(std::string_view text, GeographicAxis axis, double& value) const;

    /// Reads a longitude of which whole turns do not count, as AngularText::parseAtTurn().
    /// @param text a field that is a coordinate of a geographic side
    /// @param near the longitude that it is next to
    /// @return the longitude
    double parseAtTurn(std::string_view text, double near) const;

    /// Appends a coordinate.
    /// @param out the text to append to
    /// @param value the coordinate, finite
    /// @param axis longitude for the first coordinate, latitude for the second
    void append(std::string& out, double value, GeographicAxis axis) const;

    /// What messages call a coordinate: "an angle" or "a number".
    std::string_view noun() const;

  private:
    std::variant<AngularText, NumberFormat> _form;
};
