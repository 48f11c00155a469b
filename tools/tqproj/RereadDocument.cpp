#include "tools/tqproj/RereadDocument.h"

#include "support/TQReadMemStream.h"
#include "support/TQWriteMemStream.h"
#include "tools/tqproj/Diagnostics.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr bool withResources = false;

/// Everything that defines a projection but the numbers of its ellipsoid.
/// @param name the name that it is given
std::string definitionOf(const TQProjection& projection, const TQString& name) {
    const auto named = tq_copyOf(projection);
    named->rename(name);
    TQWriteMemStream stream;
    named->archiveTo(&stream);
    return {stream.getMemory().data(), stream.getMemory().size()};
}

/// The numbers of an ellipsoid and its datum shift.
std::vector<double> numbersOf(const TQEllipsoid& ellipsoid) {
    std::vector<double> numbers{ellipsoid.semiMajorAxis(), ellipsoid.eccentricitySquared(),
                                static_cast<double>(ellipsoid.datumShiftKind()), ellipsoid.refSemiMajorAxis(),
                                ellipsoid.refFlattening()};
    const TQEllipsoid::DatumShiftParameters shift = ellipsoid.datumShiftParameters();
    numbers.insert(numbers.end(), shift.begin(), shift.end());
    return numbers;
}

/// Whether two numbers agree in the thirteen digits that files keep of an ellipsoid's.
bool agree(double one, double other) {
    constexpr double lastDigit = 1e-12;
    return one == other || std::abs(one - other) <= lastDigit * std::max(std::abs(one), std::abs(other));
}

bool isSame(const TQEllipsoid* one, const TQEllipsoid* other) {
    return one == nullptr || other == nullptr
               ? one == other
               : tq_namesAreEqual(one->name(), other->name()) &&
                     std::ranges::equal(numbersOf(*one), numbersOf(*other), &agree);
}

std::string nameOf(const TQEllipsoid* ellipsoid) {
    return ellipsoid != nullptr ? printableText(tq_textOfName(ellipsoid->name()).utf8()) : "none";
}

} // namespace

RereadDocument::RereadDocument(std::string_view bytes) : _manager(withResources) {
    constexpr int version = 0;
    TQReadMemStream stream(bytes.data(), bytes.size(), version, TQProjMgr::FromDocument);
    constexpr bool inDocument = true;
    _manager.unarchiveFrom(&stream, inDocument);
}

std::string RereadDocument::differenceFrom(const TQProjection& original) {
    const TQString name = tq_textOfName(original.name());
    const TQProjection* const read = _manager.projWithName(name, false);
    if (read == nullptr) {
        return "it cannot be read back";
    }
    if (!isSame(original.ellipsoid(), read->ellipsoid())) {
        return "its ellipsoid, " + nameOf(original.ellipsoid()) + ", comes back as another one of this name";
    }
    return definitionOf(original, name) == definitionOf(*read, name) ? ""
                                                                     : "its parameters come back changed";
}
