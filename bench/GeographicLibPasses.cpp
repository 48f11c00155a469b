#include "bench/GeographicLibPasses.h"

#include <GeographicLib/CassiniSoldner.hpp>
#include <GeographicLib/LambertConformalConic.hpp>
#include <GeographicLib/PolarStereographic.hpp>
#include <GeographicLib/TransverseMercator.hpp>
#include <charconv>
#include <cmath>
#include <string>

using sidebyside::System;

namespace {

constexpr double utmScale = 0.9996;
constexpr double utmFalseEasting = 500000.0;

double flattening(const System& system) {
    return 1.0 - std::sqrt(1.0 - system.projection->ellipsoid()->eccentricitySquared());
}

double semiMajorAxis(const System& system) { return system.projection->ellipsoid()->semiMajorAxis(); }

bool isProjection(const System& system, const char* name) {
    return system.projDefinition.starts_with(std::string("+proj=") + name + " ");
}

/// A parameter of the PROJ definition.
double parameter(const System& system, const std::string& name, double whereMissing = 0.0) {
    const std::string key = " +" + name + "=";
    const std::size_t place = system.projDefinition.find(key);
    double value = whereMissing;
    if (place != std::string::npos) {
        const char* const begin = system.projDefinition.data() + place + key.size();
        std::from_chars(begin, system.projDefinition.data() + system.projDefinition.size(), value);
    }
    return value;
}

TQPoint falseOrigin(const System& system) { return {parameter(system, "x_0"), parameter(system, "y_0")}; }

/// @param offset what is added to GeographicLib's plane points
/// @param toPlane GeographicLib's way there, `void(double latitude, double longitude, double& x, double& y)`
/// @param toGeographic its way back, `void(double x, double y, double& latitude, double& longitude)`
template <class ToPlane, class ToGeographic>
Passes passes(const TQPoint& offset, ToPlane toPlane, ToGeographic toGeographic) {
    return {pointByPoint([=](const TQPoint& geo) {
                TQPoint plane;
                toPlane(geo.y, geo.x, plane.x, plane.y);
                return TQPoint{plane.x + offset.x, plane.y + offset.y};
            }),
            pointByPoint([=](const TQPoint& plane) {
                TQPoint geo;
                toGeographic(plane.x - offset.x, plane.y - offset.y, geo.y, geo.x);
                return geo;
            })};
}

/// A projection that GeographicLib counts from a central meridian and a latitude of its own.
template <class Projection>
Passes aroundMeridian(const Projection& projection, double meridian, double originLatitude,
                      const TQPoint& falseOrigin) {
    TQPoint origin;
    projection.Forward(meridian, originLatitude, meridian, origin.x, origin.y);
    return passes(
        {falseOrigin.x - origin.x, falseOrigin.y - origin.y},
        [=](double latitude, double longitude, double& x, double& y) {
            projection.Forward(meridian, latitude, longitude, x, y);
        },
        [=](double x, double y, double& latitude, double& longitude) {
            projection.Reverse(meridian, x, y, latitude, longitude);
        });
}

Passes utm(const System& system) {
    const GeographicLib::TransverseMercator projection(semiMajorAxis(system), flattening(system), utmScale);
    return aroundMeridian(projection, 6.0 * parameter(system, "zone") - 183.0, 0.0, {utmFalseEasting, 0.0});
}

Passes transverseMercator(const System& system) {
    const GeographicLib::TransverseMercator projection(semiMajorAxis(system), flattening(system),
                                                       parameter(system, "k", 1.0));
    return aroundMeridian(projection, parameter(system, "lon_0"), parameter(system, "lat_0"),
                          falseOrigin(system));
}

Passes lambert(const System& system) {
    const GeographicLib::LambertConformalConic projection(semiMajorAxis(system), flattening(system),
                                                          parameter(system, "lat_1"),
                                                          parameter(system, "lat_2"), 1.0);
    return aroundMeridian(projection, parameter(system, "lon_0"), parameter(system, "lat_0"),
                          falseOrigin(system));
}

Passes northernStereographic(const System& system) {
    const GeographicLib::PolarStereographic projection(semiMajorAxis(system), flattening(system),
                                                       parameter(system, "k", 1.0));
    return passes(
        falseOrigin(system),
        [=](double latitude, double longitude, double& x, double& y) {
            projection.Forward(true, latitude, longitude, x, y);
        },
        [=](double x, double y, double& latitude, double& longitude) {
            projection.Reverse(true, x, y, latitude, longitude);
        });
}

/// GeographicLib's is the exact one, along geodesics, where the others have a series.
Passes cassiniSoldner(const System& system) {
    const GeographicLib::CassiniSoldner projection(
        parameter(system, "lat_0"), parameter(system, "lon_0"),
        GeographicLib::Geodesic(semiMajorAxis(system), flattening(system)));
    return passes(
        falseOrigin(system),
        [=](double latitude, double longitude, double& x, double& y) {
            projection.Forward(latitude, longitude, x, y);
        },
        [=](double x, double y, double& latitude, double& longitude) {
            projection.Reverse(x, y, latitude, longitude);
        });
}

} // namespace

std::optional<Passes> geographicLibPasses(const System& system) {
    struct Known {
        const char* name; ///< in PROJ's definition
        Passes (*make)(const System&);
    };
    static constexpr Known known[] = {{"utm", utm},
                                      {"tmerc", transverseMercator},
                                      {"lcc", lambert},
                                      {"stere", northernStereographic},
                                      {"cass", cassiniSoldner}};
    for (const auto& [name, make] : known) {
        if (isProjection(system, name)) {
            return make(system);
        }
    }
    return std::nullopt;
}

std::string geographicLibName() { return "GeographicLib " GEOGRAPHICLIB_VERSION_STRING; }
