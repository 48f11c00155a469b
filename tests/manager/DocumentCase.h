#pragma once

#include "projection/TQProjection.h"
#include "testing/StreamBytes.h"
#include "tests/manager/ManagerCase.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <string>

// Documents written out by hand, and a manager that reads them.

/// The type code of the direct Mercator.
inline constexpr int kMercator = 5;

/// The ellipsoid of the projections here.
inline constexpr const char* kEllipsoid = "WGS 84";

/// A direct Mercator on an ellipsoid, told apart by its central meridian.
inline StreamBytes mercatorBlock(const std::string& name, double meridian = 0.0,
                                 const std::string& ellipsoid = kEllipsoid) {
    return StreamBytes()
        .tag("TQPrMercDirect", 0)
        .tag("TQPrMercator", 0)
        .tag("TQProjection", 1)
        .text(name)
        .text(ellipsoid)
        .numbers({meridian, 0.0, 0.0, 0.0, 1.0});
}

/// The reference to an object that follows for the first time.
inline StreamBytes introduction(std::uint32_t number) {
    return StreamBytes().integer(static_cast<std::int32_t>(0x80000000U | number));
}

/// The entry of a projection.
inline StreamBytes entry(std::uint32_t number, int typeCode, const StreamBytes& block) {
    return introduction(number).byte(typeCode).append(block);
}

/// The entry of a direct Mercator.
inline StreamBytes mercatorEntry(std::uint32_t number, const std::string& name, double meridian = 0.0,
                                 const std::string& ellipsoid = kEllipsoid) {
    return entry(number, kMercator, mercatorBlock(name, meridian, ellipsoid));
}

/// A block "TQEllMgr" with one ellipsoid.
inline StreamBytes ellipsoidsBlock(const std::string& name, double a, double e2) {
    return StreamBytes()
        .tag("TQEllMgr", 0)
        .integer(1)
        .tag("TQEllipsoid", 4)
        .text(name)
        .numbers({a, e2})
        .byte(0);
}

/// What stands in front of the entries, without ellipsoids.
inline StreamBytes documentHead(int count) {
    return StreamBytes().tag("TQEllMgr", 0).integer(0).tag("TQProjMgr", 0).integer(count);
}

/// A manager with kEllipsoid that reads documents.
struct DocumentCase : EmptyManager {
    CapturedMessages messages;
    CapturedPanels panels;
    TQEllipsoid* ellipsoid = manager.ellipsoidManager().addEllipsoid(
        std::make_unique<TQEllipsoid>(TQString(kEllipsoid), 6378137.0, 0.006694379990141));

    /// Reads a document, of which nothing must be left.
    void read(const StreamBytes& document, std::uint32_t flags = TQProjMgr::FromDocument) {
        ByteStream stream(document);
        stream.get()->setFlags(flags);
        manager.unarchiveFrom(stream.get());
        EXPECT_TRUE(stream.isReadExactly());
    }

    TQProjection* projection(const std::string& name) {
        return manager.projWithName(TQString(name.c_str()), false);
    }
};

/// The value of a parameter of a projection that is a number; NaN without projection.
inline double numberOf(const TQProjection* projection, const char* parameter) {
    if (projection == nullptr) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    HashTbl<TQProjParam> table(1);
    projection->getParams(table);
    return table.lookup(parameter)->doubleValue();
}

/// The central meridian of a projection.
inline double meridianOf(const TQProjection* projection) { return numberOf(projection, "lambda0"); }
