#pragma once

#include "testing/ProjectionClassTest.h"

// The sample of the projections that have the five parameters of the Mercator family.

inline std::vector<SampleParameter> mercatorParameters() {
    return {
        {{"lambda0", "Double", "9.5", kDegreesLabel}, "10.5", 1e-6},
        {{"phi0", "Double", "12.25", kDegreesLabel}, "-12.25", 1e-6},
        {{"X0", "Double", "400000", "m"}, "500000", 1.0},
        {{"Y0", "Double", "-100000", "m"}, "0", 1.0},
        {{"k0", "Double", "0.9996"}, "1", 1e-5},
    };
}

inline TextLines mercatorHeadLines() { return {headerLine("TQPrMercator v1", 5502, 5509)}; }

inline TextLines mercatorValueLines() {
    return {
        {"9.5000000000", 5504, 5509},       {"12.2500000000", 5505, 5509}, {"400000.0000000000", 5506, 5509},
        {"-100000.0000000000", 5507, 5509}, {"0.9996000000", 5508, 5509},
    };
}

inline StreamBytes mercatorValues() {
    return StreamBytes().numbers({9.5, 12.25, 400000.0, -100000.0, 0.9996});
}

/// The block "TQPrMercator" of the sample.
inline StreamBytes mercatorArchive() {
    return StreamBytes().tag("TQPrMercator", 0).append(sampleBaseArchive()).append(mercatorValues());
}

inline std::string mercatorWktItems(const std::string& projection,
                                    const std::string& scaleFactor = "0.9996") {
    return ",PROJECTION[\"" + projection +
           "\"],PARAMETER[\"latitude_of_origin\",12.25],PARAMETER[\"central_meridian\",9.5]"
           ",PARAMETER[\"scale_factor\"," +
           scaleFactor + "],PARAMETER[\"false_easting\",400000],PARAMETER[\"false_northing\",-100000]";
}

/// The class of the family that adds nothing but formulas to TQPrMercator, to be completed.
template <class Class>
ProjectionClass mercatorClass() {
    ProjectionClass mercator{};
    mercator.make = []() -> std::unique_ptr<TQProjection> { return std::make_unique<Class>(); };
    mercator.parameters = mercatorParameters();
    mercator.headLines = mercatorHeadLines();
    mercator.valueLines = mercatorValueLines();
    mercator.oldestTextVersion = 1;
    mercator.newestTextVersion = 1;
    mercator.codeWhenNotOpened = 5501;
    mercator.codeOfUnknownVersion = 5503;
    mercator.textClass = "TQPrMercator";
    mercator.wktItems = mercatorWktItems("Mercator_1SP");
    return mercator;
}
