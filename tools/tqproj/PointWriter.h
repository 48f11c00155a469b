#pragma once

#include "support/TQPoint.h"
#include "tools/tqproj/CoordinateText.h"

#include <string>

struct PointLine;

/// Writes a line with another point.
class PointWriter {
  public:
    /// @param text how its coordinates are written
    explicit PointWriter(const CoordinateText& text) : _text(text) {}

    /// Appends a line with its point replaced and everything else as it was.
    /// @param out the text to append to
    /// @param line the line
    /// @param point the point, finite
    void append(std::string& out, const PointLine& line, const TQPoint& point) const;

  private:
    CoordinateText _text;
};
