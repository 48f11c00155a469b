#pragma once

/// Projection files for the tests of the command.
namespace projectionfiles {

/// World Mercator, EPSG:3395.
inline constexpr const char* WorldMercator =
    "TQFile v1\n5\nTQPrMercator v1\nTQProjection v1\nWorld Mercator\n"
    "TQEllipsoid v2\nWGS 84\n6378137\n0.006694379990141\n0\n"
    "0\n0\n0\n0\n1\n";

/// UTM zone 31N, EPSG:32631; its area ends at 84 degrees north.
inline constexpr const char* Utm31North = "TQFile v1\n3\nTQPrUtm v2\nTQProjection v1\nUTM 31N\n"
                                          "TQEllipsoid v2\nWGS 84\n6378137\n0.006694379990141\n0\n"
                                          "3\n0\n";

/// A Mercator without a scale factor, which cannot convert the poles.
inline constexpr const char* GctpMercator = "TQFile v1\n15\nTQPrMercator v1\nTQProjection v1\nGCTP\n"
                                            "TQEllipsoid v2\nWGS 84\n6378137\n0.006694379990141\n0\n"
                                            "0\n0\n0\n0\n1\n";

/// A file of another type code than there are.
inline constexpr const char* UnknownType = "TQFile v1\n14\n";

} // namespace projectionfiles
