#pragma once

#include "ellipsoid/TQEllipsoid.h"
#include "testing/StreamBytes.h"
#include "testing/TextLines.h"

#include <string>

// What the tests of projections share: a name, an ellipsoid and the blocks that these make.

inline constexpr const char* kSampleName = "Sample";
inline constexpr const char* kSampleEllipsoidName = "Test 1900";

/// An ellipsoid with a flattening of 1/100; its inverse prints without rounding.
inline TQEllipsoid sampleEllipsoid() { return {TQString(kSampleEllipsoidName), 6400000.0, 0.0199}; }

/// The text block of a projection of that name on that ellipsoid.
inline TextLines sampleBaseLines() {
    return {
        headerLine("TQProjection v1", 5023, 5027),
        {kSampleName, 5025, 5027},
        headerLine("TQEllipsoid v2", 5002, 5007),
        {kSampleEllipsoidName, 5004, 5007},
        {"6400000", 5005, 5007},
        {"0.0199", 5006, 5007},
        {"0", 5008, 5008},
    };
}

/// The archive block of a projection of that name on that ellipsoid.
inline StreamBytes sampleBaseArchive() {
    return StreamBytes().tag("TQProjection", 1).text(kSampleName).text(kSampleEllipsoidName);
}

/// The same in the oldest version, with names as counted strings.
inline StreamBytes oldSampleBaseArchive() {
    return StreamBytes().tag("TQProjection", 0).counted(kSampleName).counted(kSampleEllipsoidName);
}

/// The geographic system of that ellipsoid in WKT.
inline std::string sampleGeographicWkt() {
    return "GEOGCS[\"Test_1900\",DATUM[\"D_Test_1900\",SPHEROID[\"Test_1900\",6400000,100]],"
           "PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]]";
}
