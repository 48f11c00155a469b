#include "tools/tqproj/GeographicDatum.h"

#include "ellipsoid/TQEllipsoid.h"
#include "proj/TQPrProj4.h"
#include "projection/TQProjection.h"
#include "support/TQUnit.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/LibraryMessages.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <string_view>
#include <utility>

namespace {

constexpr const char* noDatum = "of the ellipsoid itself, no datum known";

void takeShiftAway(TQProjection& projection) {
    auto ellipsoid = std::make_unique<TQEllipsoid>(*projection.ellipsoid());
    ellipsoid->setDatumShift(TQEllipsoid::NoDatumShift, 0.0, 0.0, {});
    projection.setOwnEllipsoid(std::move(ellipsoid));
}

/// Whether the conversions apply the datum shift of the ellipsoid, which not all classes do: whether images
/// are others without it.
bool appliesShift(const TQProjection& projection) {
    if (projection.ellipsoid() == nullptr || !projection.ellipsoid()->hasDatumShift()) {
        return false;
    }
    const std::unique_ptr<TQProjection> unshifted = tq_copyOf(projection);
    takeShiftAway(*unshifted);
    constexpr std::array<double, 2> latitudes{50.0, -50.0}; // some classes know one hemisphere
    return std::ranges::any_of(latitudes, [&](double latitude) {
        const TQPoint place{tq_deg2rad(10.0), tq_deg2rad(latitude)};
        TQPoint image;
        TQPoint unshiftedImage;
        return projection.convertGeoPt(place, image) == 0 &&
               unshifted->convertGeoPt(place, unshiftedImage) == 0 && !(image == unshiftedImage);
    });
}

/// Whether the datum shift of an ellipsoid leads from WGS 84, as far as its reference ellipsoid tells.
bool isFromWGS84(const TQEllipsoid& ellipsoid) {
    constexpr double semiMajorAxis = 6378137.0;
    constexpr double flattening = 1.0 / 298.257223563;
    constexpr double digits = 1e-12; // GRS 1980 differs by 1.6e-11
    return ellipsoid.refSemiMajorAxis() == semiMajorAxis &&
           std::abs(ellipsoid.refFlattening() - flattening) < digits;
}

std::string shiftText(const TQEllipsoid& ellipsoid) {
    const bool isHelmert = ellipsoid.datumShiftKind() == TQEllipsoid::SevenParameterShift;
    return std::string("a shift of ") + (isHelmert ? "seven" : "three") + " parameters";
}

std::string nativeDatumText(const TQProjection& projection) {
    const TQEllipsoid* const ellipsoid = projection.ellipsoid();
    if (ellipsoid == nullptr || !ellipsoid->hasDatumShift()) {
        return noDatum;
    }
    if (!appliesShift(projection)) {
        return "of the ellipsoid itself, whose datum shift this type does not apply";
    }
    return isFromWGS84(*ellipsoid) ? "WGS 84, by " + shiftText(*ellipsoid)
                                   : "the reference datum of " + shiftText(*ellipsoid) + ", not WGS 84";
}

/// Whether a definition is short enough for a sentence: an authority's code.
bool isCode(std::string_view definition) {
    return definition.find_first_of(" =[{/") == std::string_view::npos;
}

std::string definedDatumText(const TQPrProj4& projection) {
    if (projection.hasDatumShift()) {
        return projection.isBallpark() ? "WGS 84, without the shift, which PROJ does not know"
                                       : "WGS 84, by PROJ's transformation";
    }
    const std::string name = withoutControls(projection.geodeticName().utf8());
    const std::string definition = withoutControls(projection.definition().utf8());
    return name.empty() ? noDatum
                        : name + ", as " + (isCode(definition) ? definition : "its definition") + " has it";
}

std::string chooseDefinedDatum(TQPrProj4& projection, DatumChoice choice, LibraryMessages& messages) {
    projection.initPROJ(choice == DatumChoice::WGS84);
    if (projection.isInvalid()) {
        return "cannot convert on this datum: " + messages.takeReason(projection.PROJLogMessage());
    }
    if (choice == DatumChoice::Own) {
        return "";
    }
    projection.refuseBallpark();
    return projection.isBallpark()
               ? "PROJ knows no transformation between WGS 84 and the datum of the projection"
               : "";
}

std::string chooseNativeDatum(TQProjection& projection, DatumChoice choice) {
    const bool isShifted = appliesShift(projection);
    if (choice == DatumChoice::Own) {
        if (isShifted) {
            takeShiftAway(projection);
        }
        return "";
    }
    if (!isShifted) {
        return "longitude and latitude cannot be on WGS 84: the projection has no datum shift";
    }
    return isFromWGS84(*projection.ellipsoid())
               ? ""
               : "longitude and latitude cannot be on WGS 84: the datum shift leads from another datum";
}

} // namespace

std::string datumText(const TQProjection& projection) {
    const auto* const defined = dynamic_cast<const TQPrProj4*>(&projection);
    return defined != nullptr ? definedDatumText(*defined) : nativeDatumText(projection);
}

std::string chooseDatum(TQProjection& projection, DatumChoice choice, LibraryMessages& messages) {
    if (choice == DatumChoice::Usual) {
        return "";
    }
    auto* const defined = dynamic_cast<TQPrProj4*>(&projection);
    return defined != nullptr ? chooseDefinedDatum(*defined, choice, messages)
                              : chooseNativeDatum(projection, choice);
}
