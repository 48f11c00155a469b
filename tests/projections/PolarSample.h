#pragma once

#include "testing/ProjectionClassTest.h"

#include <memory>
#include <string>

// What the tests of the polar projections share: a sample and its parameters.

inline constexpr TQPoint kPolarFalseOrigin{2000000.0, -300000.5};
inline constexpr double kPolarScale = 0.994;
inline constexpr double kPolarMeridian = -45.25;

/// The sample of a class of the family at a pole; its WKT is left to the class.
template <class Polar>
ProjectionClass polarSample(const char* className, int typeCode, const char* typeName, bool isNorth) {
    ProjectionClass polar{};
    polar.lineage = {className, "TQPrPolar", "TQProjection"};
    polar.typeCode = typeCode;
    polar.typeName = typeName;
    polar.make = []() -> std::unique_ptr<TQProjection> { return std::make_unique<Polar>(); };
    polar.parameters = {
        {{"falseEasting", "Double", "2000000", "m"}, "1.5", 0.01},
        {{"falseNorthing", "Double", "-300000.5", "m"}, "-2.5", 0.01},
        {{"k0", "Double", "0.994"}, "0.5", 1e-6},
        {{"lambda0", "Double", "-45.25", kDegreesLabel}, "45.25", 1e-6},
        {{"isNorth", "Logical", isNorth ? "true" : "false"}, isNorth ? "false" : "true"},
    };
    polar.headLines = {headerLine(className + std::string(" v1"), 5023, 5027)};
    polar.innerHeadLines = {headerLine("TQPrPolar v1", 5023, 5027)};
    polar.valueLines = {{"2000000.000000", -1, 5027},
                        {"-300000.500000", -1, 5027},
                        {"0.994000", -1, 5027},
                        {"-45.250000", -1, 5027},
                        {isNorth ? "1" : "0", -1, 5027}};
    polar.oldestTextVersion = 1;
    polar.newestTextVersion = 1;
    polar.codeWhenNotOpened = 5022;
    polar.codeOfUnknownVersion = 5024;
    polar.textClass = "TQPrPolar";
    polar.archive = StreamBytes()
                        .tag(className, 0)
                        .tag("TQPrPolar", 0)
                        .append(sampleBaseArchive())
                        .numbers({2000000.0, -300000.5, 0.994, -45.25})
                        .byte(isNorth ? 1 : 0);
    polar.tags = {{className, 0, 0}, {"TQPrPolar", 0, 0}, {"TQProjection", 0, 1}};
    return polar;
}

/// Gives a polar projection the parameters of the sample.
inline void takePolarSample(TQProjection& projection, bool isNorth) {
    ParameterTable parameters;
    parameters.with("falseEasting", kPolarFalseOrigin.x)
        .with("falseNorthing", kPolarFalseOrigin.y)
        .with("k0", kPolarScale)
        .with("lambda0", kPolarMeridian)
        .with("isNorth", Logical(isNorth));
    projection.setParams(parameters.table());
}

/// The text of the sample at the north pole with one of its lines changed.
inline std::string polarText(const char* className, const std::string& line, const std::string& changed) {
    const TextLines lines = TextLines{headerLine(className + std::string(" v1"), 0, 0)} +
                            TextLines{headerLine("TQPrPolar v1", 0, 0)} + sampleBaseLines();
    std::string text = textOf(lines) + "2000000\n-300000.5\n0.994\n-45.25\n1\n";
    return text.replace(text.find(line + "\n"), line.size(), changed);
}
