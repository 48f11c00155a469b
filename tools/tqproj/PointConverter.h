#pragma once

#include "support/TQPoint.h"
#include "tools/tqproj/AngularText.h"
#include "tools/tqproj/NumberFormat.h"

#include <string>
#include <string_view>

class LibraryMessages;
class TQProjection;
struct PointLine;

/// The way a conversion goes.
enum class Direction {
    Forward, ///< from longitude and latitude to x and y
    Inverse  ///< from x and y to longitude and latitude
};

/// Converts the point of one line through a projection, from text to text.
class PointConverter {
  public:
    /// @param projection the projection; must outlive this object, as must messages
    /// @param messages where the library's messages arrive
    /// @param direction the way of the conversion
    /// @param angular how angles are read and written
    /// @param plane how plane coordinates are written
    PointConverter(const TQProjection& projection, LibraryMessages& messages, Direction direction,
                   const AngularText& angular, const NumberFormat& plane);

    /// Appends the line with its point converted and everything else as it was.
    /// @param line the line
    /// @param out the text to append to; unchanged on failure
    /// @return whether there is a result; if not, reason() tells why
    bool convert(const PointLine& line, std::string& out);

    /// Why the last line has no result.
    const std::string& reason() const { return _reason; }

  private:
    bool parsePoint(const PointLine& line, TQPoint& point);
    bool parseField(std::string_view field, GeographicAxis axis, double& value);
    bool convertPoint(const TQPoint& point, TQPoint& result);
    void append(std::string& out, double value, GeographicAxis axis) const;
    bool fail(std::string_view reason);

    const TQProjection& _projection;
    LibraryMessages& _messages;
    Direction _direction;
    AngularText _angular;
    NumberFormat _plane;
    std::string _reason;
};
