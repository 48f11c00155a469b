#pragma once

#include "support/TQPoint.h"
#include "tools/tqproj/CoordinateText.h"

#include <string>
#include <string_view>

class PointOperation;
struct PointLine;

/// Reads the point of a line.
class PointParser {
  public:
    /// @param text how its coordinates are read
    explicit PointParser(const CoordinateText& text) : _text(text) {}

    /// Reads a point.
    /// @param line the line
    /// @param point receives the point, finite; of no meaning when there is none
    /// @return whether there is a point; if not, reason() tells why
    bool parse(const PointLine& line, TQPoint& point);

    /// Reads a point for an operation: its longitude is that of the same place at the turn at which the
    /// operation takes it. One that is so many turns away that its digits tell the place no more is none.
    /// @param line the line
    /// @param operation the operation
    /// @param point receives the point, as from the other parse()
    /// @return whether there is a point; if not, reason() tells why
    bool parse(const PointLine& line, const PointOperation& operation, TQPoint& point);

    /// Why the last line has no point.
    const std::string& reason() const { return _reason; }

  private:
    bool parseField(std::string_view field, GeographicAxis axis, double& value);
    bool fail(std::string reason);

    CoordinateText _text;
    std::string _reason;
};
