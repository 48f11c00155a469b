#include "proj/TQProjCalls.h"

#include "proj/TQProjConfinement.h"
#include "support/TQUnit.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace {

bool isGeographic(const PJconsts* system) {
    const PJ_TYPE type = system != nullptr ? proj_get_type(system) : PJ_TYPE_UNKNOWN;
    return type == PJ_TYPE_GEOGRAPHIC_2D_CRS || type == PJ_TYPE_GEOGRAPHIC_3D_CRS;
}

/// The name of an object; empty where PROJ says that it is not known ("unknown", "Unknown based on ...").
std::string nameOf(const PJconsts* object) {
    const char* const name = object != nullptr ? proj_get_name(object) : nullptr;
    const std::string text = name != nullptr ? name : "";
    return text.starts_with("unknown") || text.starts_with("Unknown") ? std::string() : text;
}

/// The coordinate system of a reference system; null without one.
TQProjHandle axesOf(pj_ctx* context, const PJconsts* system) {
    return TQProjHandle(system != nullptr ? proj_crs_get_coordinate_system(context, system) : nullptr);
}

/// The unit of the first axis, in radians or metres; another one where PROJ tells none.
double unitOfAxes(pj_ctx* context, const TQProjHandle& axes, double unit) {
    constexpr int firstAxis = 0;
    proj_cs_get_axis_info(context, axes.get(), firstAxis, nullptr, nullptr, nullptr, &unit, nullptr, nullptr,
                          nullptr);
    return unit;
}

} // namespace

TQProjContextHandle tq_newProjContext(TQProjTrust trust, std::string& log) {
    log.clear();
    TQProjContextHandle context = trust == TQProjTrust::Full ? tq_newOpenContext() : tq_newConfinedContext();
    proj_log_level(context.get(), PJ_LOG_ERROR);
    proj_log_func(context.get(), &log, [](void* firstMessage, int /*level*/, const char* message) {
        auto& text = *static_cast<std::string*>(firstMessage);
        text = text.empty() ? message : text;
    });
    return context;
}

TQProjHandle tq_newProjObject(pj_ctx* context, const TQString& definition) {
    return TQProjHandle(proj_create(context, definition.utf8().c_str()));
}

TQProjHandle tq_newProjTransformation(pj_ctx* context, const PJconsts* source, const PJconsts* target) {
    const TQProjHandle asDefined(proj_create_crs_to_crs_from_pj(context, source, target, nullptr, nullptr));
    return TQProjHandle(asDefined ? proj_normalize_for_visualization(context, asDefined.get()) : nullptr);
}

bool tq_isBallpark(pj_ctx* context, const PJconsts* operation) {
    return operation != nullptr && proj_coordoperation_has_ballpark_transformation(context, operation) != 0;
}

// Such an operation has no accuracy; only where there is none the operation itself is worth the time to ask.
bool tq_wasBallpark(pj_ctx* context, PJconsts* operation) {
    if (proj_pj_info(operation).accuracy >= 0.0) {
        return false;
    }
    const TQProjHandle last(proj_trans_get_last_used_operation(operation));
    return tq_isBallpark(context, last.get());
}

double tq_angularUnitInDegrees(pj_ctx* context, const PJconsts* system) {
    const double degree = tq_deg2rad(1.0);
    const double unit = isGeographic(system) ? unitOfAxes(context, axesOf(context, system), degree) : degree;
    return unit == degree ? 1.0 : tq_rad2deg(unit);
}

double tq_primeMeridian(pj_ctx* context, const PJconsts* system) {
    const TQProjHandle meridian(system != nullptr ? proj_get_prime_meridian(context, system) : nullptr);
    double longitude = 0.0;
    double radians = 0.0; // of the unit of the longitude
    if (meridian) {
        proj_prime_meridian_get_parameters(context, meridian.get(), &longitude, &radians, nullptr);
    }
    return tq_rad2deg(longitude * radians);
}

TQString tq_geodeticName(pj_ctx* context, const PJconsts* system) {
    const TQProjHandle datum(system != nullptr ? proj_crs_get_datum_forced(context, system) : nullptr);
    const std::string ofSystem = nameOf(system);
    return TQString((ofSystem.empty() ? nameOf(datum.get()) : ofSystem).c_str());
}

double tq_lengthUnitInMetres(pj_ctx* context, const PJconsts* system) {
    constexpr double metre = 1.0;
    const bool isOfSpace = system != nullptr && proj_get_type(system) == PJ_TYPE_GEOCENTRIC_CRS;
    const TQProjHandle axes = axesOf(context, isOfSpace ? nullptr : system);
    const bool isPlane = axes && proj_cs_get_type(context, axes.get()) == PJ_CS_TYPE_CARTESIAN;
    return isPlane ? unitOfAxes(context, axes, metre) : metre;
}

TQProjHandle tq_horizontalSystem(pj_ctx* context, const PJconsts* system) {
    TQProjHandle part(system != nullptr ? proj_clone(context, system) : nullptr);
    for (bool isWhole = false; part && !isWhole;) {
        constexpr int first = 0;
        switch (proj_get_type(part.get())) {
        case PJ_TYPE_COMPOUND_CRS:
            part.reset(proj_crs_get_sub_crs(context, part.get(), first));
            break;
        case PJ_TYPE_BOUND_CRS:
            part.reset(proj_get_source_crs(context, part.get()));
            break;
        default:
            isWhole = true;
        }
    }
    return part;
}

double tq_eccentricitySquared(pj_ctx* context, const PJconsts* system) {
    const TQProjHandle ellipsoid(system != nullptr ? proj_get_ellipsoid(context, system) : nullptr);
    double a = 1.0;
    double b = 1.0;
    if (ellipsoid) {
        proj_ellipsoid_get_parameters(context, ellipsoid.get(), &a, &b, nullptr, nullptr);
    }
    return (a - b) * (a + b) / (a * a);
}

bool tq_areaOfUse(pj_ctx* context, const PJconsts* system, TQPoint& southWest, TQPoint& northEast) {
    constexpr double unknown = -1000.0;
    TQPoint first{unknown, unknown};
    TQPoint second{unknown, unknown};
    const bool isAnswered = system != nullptr && proj_get_area_of_use(context, system, &first.x, &first.y,
                                                                      &second.x, &second.y, nullptr) != 0;
    const double least = std::min({first.x, first.y, second.x, second.y});
    if (!isAnswered || least == unknown) {
        return false;
    }
    southWest = first;
    northEast = second;
    return true;
}

// PROJ writes the text into the context; that of the process is not for objects to share.
TQString tq_projErrorText(pj_ctx* context, int error) {
    const TQProjContextHandle own = context == nullptr ? tq_newOpenContext() : nullptr;
    pj_ctx* const writer = own ? own.get() : context;
    return tq_projText(error != 0 ? proj_context_errno_string(writer, error) : nullptr);
}

TQString tq_projText(const char* text) { return TQString(text != nullptr ? text : ""); }

// PROJ keeps the number of an old error through later successes.
int tq_projTransform(PJconsts* operation, PJ_DIRECTION direction, TQPoint& point) {
    proj_errno_reset(operation);
    const PJ_COORD result = proj_trans(operation, direction, proj_coord(point.x, point.y, 0.0, 0.0));
    point = {result.xy.x, result.xy.y};
    return proj_errno(operation);
}

// PROJ tells a failure in an array by infinite coordinates alone, which some points have without one: those
// are converted once more.
int tq_projTransform(PJconsts* operation, PJ_DIRECTION direction, std::span<TQPoint> points,
                     std::span<signed char> statuses) {
    const std::vector<TQPoint> before(points.begin(), points.end());
    proj_trans_generic(operation, direction, &points.front().x, sizeof(TQPoint), points.size(),
                       &points.front().y, sizeof(TQPoint), points.size(), nullptr, 0, 0, nullptr, 0, 0);
    int firstError = 0;
    for (std::size_t index = 0; index < points.size(); ++index) {
        statuses[index] = 0;
        if (!std::isfinite(points[index].x) || !std::isfinite(points[index].y)) {
            points[index] = before[index];
            const int error = tq_projTransform(operation, direction, points[index]);
            statuses[index] = error == 0 ? 0 : -1;
            firstError = firstError == 0 ? error : firstError;
        }
    }
    return firstError;
}
