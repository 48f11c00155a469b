#pragma once

#include "support/TQUnit.h"
#include "tools/tqproj/DegreeMinuteSecond.h"
#include "tools/tqproj/NumberFormat.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Angles of the geographic side to and from text, in the unit that the user chose.
class AngularText {
  public:
    /// @param unit TQUnitDegree, TQUnitRadian, TQUnitGon or TQUnitDegreeMinuteSecond
    /// @param precision the number of decimals of the unit, for degrees, minutes and seconds those of the
    ///        second; NumberFormat::fullPrecision; or nothing for the unit's usual one, which keeps a tenth
    ///        of a millimetre on the ground
    /// @param valueUnit the unit of the angles that are read and written
    AngularText(std::uint32_t unit, std::optional<int> precision, std::uint32_t valueUnit = TQUnitRadian);

    /// Reads an angle.
    /// @param text the whole field
    /// @param axis the axis that the angle belongs to
    /// @param angle receives the angle, perhaps infinite or NaN; unchanged when the field is no angle
    /// @return whether the whole field is an angle
    bool parse(std::string_view text, GeographicAxis axis, double& angle) const;

    /// Reads a longitude of which whole turns do not count. They are taken away in the unit of the text, in
    /// which they lose nothing: "362.3522" is what "2.3522" is but for the digits that the greater number
    /// lacks.
    /// @param text a field that is an angle
    /// @param near the longitude that it is next to
    /// @return the longitude
    double parseAtTurn(std::string_view text, double near) const;

    /// Appends an angle.
    /// @param out the text to append to
    /// @param angle the angle, finite
    /// @param axis the axis that the angle belongs to
    void append(std::string& out, double angle, GeographicAxis axis) const;

    /// The code of a unit from the name that the option --unit gives it: "deg", "rad", "gon" or "dms".
    /// @param name the name
    /// @return the unit code, or 0 for another name
    static std::uint32_t unitFromName(std::string_view name);

  private:
    bool parseValue(std::string_view text, GeographicAxis axis, double& value) const;

    bool _isSexagesimal;
    double _turn; // in the unit
    TQUnitConversion _toValue;
    TQUnitConversion _fromValue;
    NumberFormat _format;
};
