#include "projection/TQProjection.h"
#include "testing/VirtualPlace.h"

#include <gtest/gtest.h>

#include <vector>

// Programs compiled against the library call virtual operations by their place, so the order is part of the
// interface.
#ifndef _WIN32

namespace {

void expectAscending(const std::vector<std::ptrdiff_t>& places) {
    for (std::size_t i = 1; i < places.size(); ++i) {
        EXPECT_LT(places[i - 1], places[i]) << "operations " << i - 1 << " and " << i << " of the list";
    }
}

using P = TQProjection;
using ConvertPoint = int (P::*)(const TQPoint&, TQPoint&) const;
using IsValid = bool (P::*)(const TQPoint&) const;

} // namespace

TEST(VirtualOrder, OfObjects) {
    expectAscending({placeOf(&TQObject::className), placeOf(&TQObject::isKindOf),
                     placeOf(&TQObject::isKindOfClass), placeOf(&TQObject::isMemberOf),
                     placeOf(&TQObject::isMemberOfClass), placeOf(&TQObject::copy), placeOf(&TQObject::awake),
                     placeOf(&TQObject::isEqual), placeOf(&TQObject::operator==),
                     placeOf(&TQObject::archiveTo), placeOf(&TQObject::unarchiveFrom)});
}

TEST(VirtualOrder, OfProjections) {
    expectAscending({placeOf(&P::unarchiveFrom),
                     placeOf(&P::initConstants),
                     placeOf(&P::WKTProjectionStuff),
                     placeOf(&P::projectionType),
                     placeOf(&P::typeName),
                     placeOf(&P::initFromStream),
                     placeOf(&P::getParams),
                     placeOf(&P::setParams),
                     placeOf(&P::hasSameDefinition),
                     placeOf(&P::loadFromFile),
                     placeOf(&P::writeToFile),
                     placeOf(static_cast<ConvertPoint>(&P::convertGeoPt)),
                     placeOf(static_cast<ConvertPoint>(&P::convertGlobalPt)),
                     placeOf(&P::northAngleAt),
                     placeOf(static_cast<IsValid>(&P::isGeoPtValid)),
                     placeOf(&P::isGlobalPtValid),
                     placeOf(&P::meridianShape),
                     placeOf(&P::parallelShape),
                     placeOf(&P::northPolePosition),
                     placeOf(&P::southPolePosition),
                     placeOf(&P::center),
                     placeOf(&P::setEllipsoid),
                     placeOf(&P::needsDatumShift),
                     placeOf(&P::hasDatumShift),
                     placeOf(&P::isInvalid),
                     placeOf(&P::wktDefinition)});
}

TEST(VirtualOrder, NothingStandsBetweenTheOperationsOfProjections) {
    const std::ptrdiff_t first = placeOf(&P::initConstants);
    EXPECT_EQ(first, placeOf(&P::unarchiveFrom) + 1);
    EXPECT_EQ(placeOf(&P::wktDefinition), first + 24);
}

#endif
