#include "tools/tqresources/EpsgDataSet.h"

#include "support/TQNumberText.h"
#include "support/TQUnit.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace {

// The radians of a degree.
constexpr double degree = 0.017453292519943295;

/// A value in degrees, metres or as a factor.
double inOurUnits(double value, double factor, std::string_view category) {
    return category == "angular" ? value * (factor / degree) : value * factor;
}

} // namespace

double EpsgOperation::parameter(int code) const {
    const auto found = parameters.find(code);
    if (found == parameters.end()) {
        throw NotExpressible("has no parameter " + std::to_string(code));
    }
    return found->second;
}

EpsgDataSet::EpsgDataSet() : _context(proj_context_create()) { proj_log_level(_context.get(), PJ_LOG_NONE); }

std::string EpsgDataSet::version() const {
    const char* version = proj_context_get_database_metadata(_context.get(), "EPSG.VERSION");
    return version != nullptr ? version : "";
}

EpsgDataSet::Object EpsgDataSet::existing(PJ* object) {
    if (object == nullptr) {
        throw NotExpressible("is not in the data set");
    }
    return Object(object);
}

EpsgDataSet::Object EpsgDataSet::object(const std::string& code, PJ_CATEGORY category) const {
    return existing(proj_create_from_database(_context.get(), "EPSG", code.c_str(), category, 0, nullptr));
}

EpsgEllipsoid EpsgDataSet::ellipsoid(const std::string& code) const {
    const Object ellipsoid = object(code, PJ_CATEGORY_ELLIPSOID);
    double a = 0.0;
    double b = 0.0;
    double inverseFlattening = 0.0;
    int isMinorAxisDerived = 0;
    proj_ellipsoid_get_parameters(_context.get(), ellipsoid.get(), &a, &b, &isMinorAxisDerived,
                                  &inverseFlattening);
    const double f = 1.0 / inverseFlattening;
    return {a, isMinorAxisDerived != 0 ? f * (2.0 - f) : (a - b) * (a + b) / (a * a)};
}

EpsgOperation EpsgDataSet::operation(const PJ* operation) const {
    EpsgOperation result{};
    const char* code = nullptr;
    proj_coordoperation_get_method_info(_context.get(), operation, nullptr, nullptr, &code);
    result.method = code != nullptr ? tq_parseLong(code) : 0;
    const int count = proj_coordoperation_get_param_count(_context.get(), operation);
    for (int index = 0; index < count; ++index) {
        double value = 0.0;
        double factor = 0.0;
        const char* category = nullptr;
        proj_coordoperation_get_param(_context.get(), operation, index, nullptr, nullptr, &code, &value,
                                      nullptr, &factor, nullptr, nullptr, nullptr, &category);
        result.parameters[tq_parseLong(code)] = inOurUnits(value, factor, category);
    }
    return result;
}

std::string EpsgDataSet::datumName(const PJ* system) const {
    const Object datum = existing(proj_crs_get_datum_forced(_context.get(), system));
    return proj_get_name(datum.get());
}

std::string EpsgDataSet::ellipsoidCode(const PJ* system) const {
    const Object ellipsoid = existing(proj_get_ellipsoid(_context.get(), system));
    const char* code = proj_get_id_code(ellipsoid.get(), 0);
    return code != nullptr ? code : "";
}

EpsgShift EpsgDataSet::shiftToWgs84(const std::string& code) const {
    const Object transformation = object(code, PJ_CATEGORY_COORDINATE_OPERATION);
    const Object source = existing(proj_get_source_crs(_context.get(), transformation.get()));
    const Object target = existing(proj_get_target_crs(_context.get(), transformation.get()));
    if (std::string_view(proj_get_name(target.get())) != "WGS 84") {
        throw NotExpressible("does not lead to WGS 84");
    }
    return {operation(transformation.get()), datumName(source.get()), ellipsoidCode(source.get())};
}

double EpsgDataSet::primeMeridian(const PJ* geographic) const {
    const Object meridian = existing(proj_get_prime_meridian(_context.get(), geographic));
    double longitude = 0.0;
    double factor = 0.0;
    proj_prime_meridian_get_parameters(_context.get(), meridian.get(), &longitude, &factor, nullptr);
    return inOurUnits(longitude, factor, "angular");
}

/// The degrees of the unit of a geographic system's axes.
double EpsgDataSet::degreesOfUnit(const PJ* geographic) const {
    const Object axes = existing(proj_crs_get_coordinate_system(_context.get(), geographic));
    double factor = 0.0;
    proj_cs_get_axis_info(_context.get(), axes.get(), 0, nullptr, nullptr, nullptr, &factor, nullptr, nullptr,
                          nullptr);
    return inOurUnits(1.0, factor, "angular");
}

void EpsgDataSet::expectMetres(const PJ* system) const {
    const Object axes = existing(proj_crs_get_coordinate_system(_context.get(), system));
    double factor = 0.0;
    proj_cs_get_axis_info(_context.get(), axes.get(), 0, nullptr, nullptr, nullptr, &factor, nullptr, nullptr,
                          nullptr);
    if (factor != 1.0) {
        throw NotExpressible("is not in metres");
    }
}

EpsgArea EpsgDataSet::area(const PJ* system) const {
    constexpr double unknown = -1000.0;
    EpsgArea area{unknown, unknown, unknown, unknown};
    proj_get_area_of_use(_context.get(), system, &area.west, &area.south, &area.east, &area.north, nullptr);
    if (std::min({area.west, area.south, area.east, area.north}) == unknown) {
        throw NotExpressible("has no area of use");
    }
    return area;
}

EpsgArea EpsgDataSet::areaOfUse(const std::string& code) const {
    return area(object(code, PJ_CATEGORY_CRS).get());
}

std::vector<ImagePair> EpsgDataSet::images(const PJ* system, const PJ* geographic) const {
    const auto [west, south, givenEast, north] = area(system);
    const double east = givenEast < west ? givenEast + 360.0 : givenEast;
    const Object asFound =
        existing(proj_create_crs_to_crs_from_pj(_context.get(), geographic, system, nullptr, nullptr));
    const Object conversion = existing(proj_normalize_for_visualization(_context.get(), asFound.get()));
    const double unit = degreesOfUnit(geographic);
    const double meridian = primeMeridian(geographic);
    constexpr int steps = 4;
    std::vector<ImagePair> pairs;
    for (int column = 0; column <= steps; ++column) {
        for (int row = 0; row <= steps; ++row) {
            const double longitude = west + (east - west) * column / steps;
            const double latitude = south + (north - south) * row / steps;
            const PJ_COORD image =
                proj_trans(conversion.get(), PJ_FWD,
                           proj_coord((longitude - meridian) / unit, latitude / unit, 0.0, 0.0));
            pairs.push_back({{tq_deg2rad(std::remainder(longitude, 360.0)), tq_deg2rad(latitude)},
                             {image.xy.x, image.xy.y}});
        }
    }
    return pairs;
}

EpsgSystem EpsgDataSet::system(const std::string& code) const {
    const Object system = object(code, PJ_CATEGORY_CRS);
    if (proj_get_type(system.get()) != PJ_TYPE_PROJECTED_CRS) {
        throw NotExpressible("is no projected system");
    }
    expectMetres(system.get());
    const Object geographic = existing(proj_crs_get_geodetic_crs(_context.get(), system.get()));
    const Object conversion = existing(proj_crs_get_coordoperation(_context.get(), system.get()));
    return {operation(conversion.get()), datumName(geographic.get()), ellipsoidCode(geographic.get()),
            primeMeridian(geographic.get()), images(system.get(), geographic.get())};
}
