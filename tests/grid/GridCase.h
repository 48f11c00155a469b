#pragma once

#include "grid/TQGrid.h"
#include "support/TQPath.h"
#include "testing/StreamBytes.h"
#include "testing/TemporaryDirectory.h"
#include "tests/manager/ManagerCase.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

// What the tests of grids share: a sample grid, its archive written out by hand, temporary and golden files,
// and documents whose projections take the places of others.

inline std::int32_t signedUnit(std::uint32_t unit) { return static_cast<std::int32_t>(unit); }

/// Nothing, a name, or a text as a test compares it.
inline std::string textOf(const TQString* text) { return text != nullptr ? text->utf8() : "(null)"; }

/// A drawing definition of some bytes.
inline std::unique_ptr<TQVirtualDrawingGrid> drawingOf(std::string bytes) {
    constexpr bool copy = true;
    return std::make_unique<TQVirtualDrawingGrid>(bytes.data(), static_cast<int>(bytes.size()), copy);
}

/// The bytes of a drawing definition.
inline std::string bytesOf(const TQVirtualDrawingGrid& drawing) {
    int size = -1;
    const char* const data = drawing.getInternalData(&size);
    return data != nullptr ? std::string(data, static_cast<std::size_t>(size)) : "(null)";
}

inline std::string drawingOn(const TQGrid& grid) {
    const TQVirtualDrawingGrid* const drawing = grid.virtualDrawingDefinition();
    return drawing != nullptr ? bytesOf(*drawing) : "(none)";
}

/// An angle without the base-360 flag.
inline StreamBytes angleBytes(double value, std::uint32_t unit) {
    return StreamBytes().number(value).integer(signedUnit(unit)).byte(0);
}

/// Block "TQVirtualDrawingGrid".
inline StreamBytes drawingBytes(std::string_view bytes) {
    return StreamBytes().tag("TQVirtualDrawingGrid", 0).counted(bytes);
}

/// What every version of block "TQGrid" begins with, in an angular or metric unit: the sample's.
inline StreamBytes gridHead(int version, std::uint32_t unit = TQUnitDegree,
                            std::uint32_t angleUnit = TQUnitDegree) {
    return StreamBytes()
        .tag("TQGrid", version)
        .text("Carte")
        .integer(0x2A) // mode 2, reference-point mode 0x28
        .integer(signedUnit(unit))
        .numbers({1.5, -2.5}) // reference point
        .append(angleBytes(10.0, angleUnit))
        .append(angleBytes(20.0, angleUnit)) // angular reference point
        .append(angleBytes(3.0, angleUnit))  // angular reference meridian
        .numbers({100.0, 200.0})             // spacing
        .numbers({0.5, 0.25})                // border distance
        .append(angleBytes(1.0, angleUnit))
        .append(angleBytes(0.5, angleUnit)) // angular spacing
        .numbers({-4.0, 8.0, 16.0, -32.0})  // regular grid limit
        .byte(0)                            // there is a projection
        .text("Lambert");
}

/// The numberings of the sample.
inline StreamBytes labelBytes() {
    return StreamBytes().byte(1).byte(7).text("11").byte(0).byte(9).text("AZ");
}

/// The whole sample of version 10.
inline StreamBytes newestGrid() {
    return gridHead(10)
        .byte(5) // keepsBorderLines
        .byte(1) // usesAlphanumbering
        .byte(1) // usesNumberingLimit
        .append(labelBytes())
        .byte(0)  // no drawing definition
        .byte(1); // lockedOnGeoRefProjection
}

/// The sample as an application makes it, without its projection.
inline void fillSample(TQGrid& grid) {
    grid.setName(TQString("Carte"));
    grid.setMode(TQGrid::AngularGrid);
    grid.setReferencePointMode(0x28);
    grid.setReferencePoint({1.5, -2.5});
    grid.setAngularReferencePoint(TQPoint{10.0, 20.0});
    grid.setAngularReferenceMeridian(TQAngleWithUnit(3.0, TQUnitDegree));
    grid.setSpacing({100.0, 200.0});
    grid.setBorderDist({0.5, 0.25});
    grid.setAngularSpacing(TQSize{1.0, 0.5});
    grid.setKeepsBorderLines(5);
    grid.setIndexParameters({true, true, {true, 7, TQString("11")}, {false, 9, TQString("AZ")}});
    grid.set_lockedOnGeoRefProjection(true);
}

/// The members that every version has, as the sample has them.
inline void expectSampleHead(const TQGrid& grid) {
    EXPECT_EQ(textOf(grid.name()), "Carte");
    EXPECT_EQ(grid.mode(), 2);
    EXPECT_EQ(grid.referencePointMode(), 0x28);
    EXPECT_EQ(grid.unit(), TQUnitDegree);
    EXPECT_EQ(grid.referencePoint(), (TQPoint{1.5, -2.5}));
    EXPECT_EQ(grid.getAngularReferencePoint(), TQAnglePoint(10.0, 20.0, TQUnitDegree));
    EXPECT_EQ(grid.getAngularReferenceMeridian(), TQAngleWithUnit(3.0, TQUnitDegree));
    EXPECT_EQ(grid.spacing(), (TQSize{100.0, 200.0}));
    EXPECT_EQ(grid.borderDist(), (TQSize{0.5, 0.25}));
    EXPECT_EQ(grid.getAngularSpacing(), TQAngleSize(1.0, 0.5, TQUnitDegree));
    EXPECT_EQ(grid.getRegularGridLimit(), TQRect(-4.0, 8.0, 16.0, -32.0));
    EXPECT_EQ(textOf(grid.projectionName()), "Lambert");
    EXPECT_EQ(grid.projection(), nullptr);
}

inline void expectNumbering(const TQIndexNumbering& numbering, bool isNumeric, int extra,
                            const std::string& label) {
    EXPECT_EQ(numbering.isNumeric, isNumeric);
    EXPECT_EQ(numbering.extra, extra);
    EXPECT_EQ(textOf(numbering.startLabel ? &*numbering.startLabel : nullptr), label);
}

inline void expectSampleLabels(const TQGrid& grid) {
    EXPECT_TRUE(grid.usesAlphanumbering());
    expectNumbering(grid.indexParameters().horizontal, true, 7, "11");
    expectNumbering(grid.indexParameters().vertical, false, 9, "AZ");
}

inline void expectNoLabels(const TQGrid& grid) {
    EXPECT_FALSE(grid.usesAlphanumbering());
    expectNumbering(grid.indexParameters().horizontal, false, 0, "(null)");
    expectNumbering(grid.indexParameters().vertical, false, 0, "(null)");
}

/// The bytes of a file that stands beside the tests.
inline std::string goldenFile(const std::string& name) {
    std::string bytes = readBytes(TQString((TQ_GRID_FILES "/" + name).c_str()));
    EXPECT_FALSE(bytes.empty()) << name;
    return bytes;
}

/// Lets a document's projection take the place of the one that a manager has under its name, also in grids.
inline void replaceProjection(const ManagerTest& directories, TQProjMgr& manager, const std::string& name) {
    constexpr double meridian = 12.0; // which no other projection of the tests has
    TQProjMgr source(false);
    source.loadProjection(directories.userFile("document.proj", mercatorFile(name, meridian)), false,
                          kNoFlags);
    ByteStream document(archivedBytes(source));
    document.get()->setFlags(TQProjMgr::FromDocument | TQProjMgr::Silent | TQProjMgr::ReplaceInObservers);
    manager.unarchiveFrom(document.get());
}

/// A temporary file that holds a text, at its beginning.
inline TQStreamHandle fileHolding(const std::string& text) {
    TQStreamHandle file(std::tmpfile());
    EXPECT_NE(file, nullptr);
    EXPECT_EQ(std::fwrite(text.data(), 1, text.size(), file.get()), text.size());
    std::rewind(file.get());
    return file;
}
