#pragma once

#include "support/TQPoint.h"

#include <cstdio>
#include <vector>

/// A list of points.
///
/// Text form: one line with the number of points, then one line "x y" for each. Blanks (a NUL is one)
/// separate and surround the numbers, whatever follows them on the line is ignored, the decimal point is '.'
/// under every locale, lines end in "\n" or "\r\n", and of a line the first 1024 characters count.
///
/// Archived as the version tag "TQPolyline" 0, the number of points in 4 bytes and each point's 16 bytes.
class TQSYSTEMW_EXPORT TQPolyline {
  public:
    /// The points in order.
    const std::vector<TQPoint>& points() const { return _points; }

    /// How many points there are.
    int count() const { return static_cast<int>(_points.size()); }

    /// A point by its index from 0; (0, 0) outside the list.
    /// @param index the index
    TQPoint pointAt(int index) const;

    /// Appends a point.
    /// @param point the point
    void add(const TQPoint& point);

    /// Reads the text form from the stream's position on and leaves the stream behind its last line.
    /// @param file a stream opened for reading; stays the caller's
    /// @return 0, or 1 when the stream is null, the number of points is missing, negative or no whole
    ///         number, or a point's line is missing or has fewer than two numbers; the list then stays as it
    ///         was
    int readFromFile(std::FILE* file);

    /// Whether both lists hold equal points in the same order.
    /// @param other the list to compare with
    bool operator==(const TQPolyline& other) const = default;

    /// Writes the list.
    /// @param stream the stream to write to, not null
    void archiveTo(TQWriteStream* stream) const;

    /// Reads what archiveTo() wrote. Of an unknown version nothing is read but a message is printed; a list
    /// that is not there whole fails the stream. The list is empty then.
    /// @param stream the stream to read from, not null
    void unarchiveFrom(TQReadStream* stream);

  private:
    std::vector<TQPoint> _points;
};
