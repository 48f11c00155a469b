#pragma once

#include "manager/TQProjMgr.h"
#include "support/TQUnit.h"
#include "testing/Differences.h"
#include "testing/ProjOperation.h"
#include "tools/tqresources/CodeList.h"

#include <array>
#include <cmath>
#include <memory>
#include <numbers>
#include <proj.h>
#include <string>
#include <vector>

/// The generated resource tree beside PROJ's own results for the EPSG codes of its lists: what the tests
/// assert and the table prints.
namespace resourcetree {

/// An object of PROJ's database with the context that it needs.
class EpsgObject {
  public:
    EpsgObject(const std::string& code, PJ_CATEGORY category) : _context(proj_context_create()) {
        proj_log_level(_context.get(), PJ_LOG_NONE);
        _object.reset(proj_create_from_database(_context.get(), "EPSG", code.c_str(), category, 0, nullptr));
    }

    PJ_CONTEXT* context() const { return _context.get(); }
    PJ* handle() const { return _object.get(); }

    /// West, south, east and north of the area of use, in degrees.
    std::array<double, 4> area() const {
        std::array<double, 4> borders{};
        auto& [west, south, east, north] = borders;
        proj_get_area_of_use(context(), handle(), &west, &south, &east, &north, nullptr);
        return borders;
    }

    /// 25 points over the area of use, in radians from Greenwich.
    std::vector<TQPoint> points() const {
        const auto [west, south, east, north] = area();
        const double width = east < west ? east + 360.0 - west : east - west;
        std::vector<TQPoint> all;
        for (int index = 0; index < 25; ++index) {
            const double longitude = west + width * (index % 5) / 4.0;
            const double latitude = south + (north - south) * (index / 5) / 4.0;
            all.push_back({tq_deg2rad(std::remainder(longitude, 360.0)), tq_deg2rad(latitude)});
        }
        return all;
    }

  private:
    struct Destroy {
        void operator()(PJ_CONTEXT* context) const { proj_context_destroy(context); }
        void operator()(PJ* object) const { proj_destroy(object); }
    };
    std::unique_ptr<PJ_CONTEXT, Destroy> _context;
    std::unique_ptr<PJ, Destroy> _object;
};

/// PROJ's projection of a projected system, from its own geographic system.
class EpsgProjection {
  public:
    explicit EpsgProjection(const std::string& code)
        : _system(code, PJ_CATEGORY_CRS),
          _conversion(ProjOperation::betweenSystems("EPSG:" + readBase(), "EPSG:" + code)) {}

    std::vector<TQPoint> points() const { return _system.points(); }

    TQPoint forward(const TQPoint& geo) const {
        const double longitude = std::remainder(geo.x - _meridian, 2.0 * std::numbers::pi);
        return _conversion.forward({longitude / _unit, geo.y / _unit});
    }

  private:
    /// Takes prime meridian and unit from the geographic system and answers its code.
    std::string readBase() {
        PJ_CONTEXT* context = _system.context();
        PJ* base = proj_crs_get_geodetic_crs(context, _system.handle());
        PJ* meridian = proj_get_prime_meridian(context, base);
        PJ* axes = proj_crs_get_coordinate_system(context, base);
        double longitude = 0.0;
        double factor = 0.0;
        proj_prime_meridian_get_parameters(context, meridian, &longitude, &factor, nullptr);
        _meridian = longitude * factor;
        proj_cs_get_axis_info(context, axes, 0, nullptr, nullptr, nullptr, &_unit, nullptr, nullptr, nullptr);
        const std::string code = proj_get_id_code(base, 0);
        for (PJ* object : {axes, meridian, base}) {
            proj_destroy(object);
        }
        return code;
    }

    EpsgObject _system;
    double _meridian = 0.0; // radians from Greenwich
    double _unit = 1.0;     // radians
    ProjOperation _conversion;
};

/// PROJ's transformation from a geographic system in degrees, latitude first, to WGS 84.
class EpsgTransformation {
  public:
    explicit EpsgTransformation(const std::string& code)
        : _object(code, PJ_CATEGORY_COORDINATE_OPERATION),
          _operation("urn:ogc:def:coordinateOperation:EPSG::" + code) {}

    std::vector<TQPoint> points() const { return _object.points(); }

    TQPoint toLocal(const TQPoint& geo) const { return inRadians(_operation.inverse(inDegrees(geo))); }
    TQPoint toWgs84(const TQPoint& geo) const { return inRadians(_operation.forward(inDegrees(geo))); }

  private:
    static TQPoint inDegrees(const TQPoint& geo) { return {tq_rad2deg(geo.y), tq_rad2deg(geo.x)}; }
    static TQPoint inRadians(const TQPoint& degrees) {
        return {tq_deg2rad(degrees.y), tq_deg2rad(degrees.x)};
    }

    EpsgObject _object;
    ProjOperation _operation;
};

/// The lines of a list of tools/tqresources.
inline std::vector<CodeLine> linesOf(const char* list) {
    return readCodeList(std::filesystem::path(TQ_RESOURCE_LISTS) / list);
}

/// The EPSG code of the transformation of a datum; empty for none.
inline std::string transformationOf(const std::string& datum) {
    for (const CodeLine& line : linesOf("datums.tsv")) {
        if (line.name == datum) {
            return line.code;
        }
    }
    return {};
}

/// A projection without the datum shift of its ellipsoid, while this lives.
class WithoutShift {
  public:
    explicit WithoutShift(TQProjection& projection)
        : _projection(projection), _before(projection.ellipsoid()), _plain(*_before) {
        _plain.setDatumShift(TQEllipsoid::NoDatumShift, 0.0, 0.0, {});
        _projection.setEllipsoid(&_plain);
    }
    ~WithoutShift() { _projection.setEllipsoid(_before); }
    WithoutShift(const WithoutShift&) = delete;
    WithoutShift& operator=(const WithoutShift&) = delete;

  private:
    TQProjection& _projection;
    TQEllipsoid* _before;
    TQEllipsoid _plain;
};

inline double onGround(const TQProjection& projection, const TQPoint& one, const TQPoint& other) {
    return projection.ellipsoid()->semiMajorAxis() * groundAngle(one, other);
}

/// The differences of a projection from PROJ's in both directions, and with its datum shift.
struct Comparison {
    Differences forward; ///< on the plane, without datum shift
    Differences inverse; ///< on the ground, without datum shift
    Differences shifted; ///< on the plane, from WGS 84; nothing without a datum
};

inline Comparison compare(TQProjection& projection, const CodeLine& line) {
    Comparison result;
    const EpsgProjection reference(line.code);
    {
        const WithoutShift onItsOwnDatum(projection);
        for (const TQPoint& geo : reference.points()) {
            TQPoint global;
            TQPoint back;
            projection.convertGeoPt(geo, global);
            projection.convertGlobalPt(reference.forward(geo), back);
            result.forward.add(planeDistance(global, reference.forward(geo)));
            result.inverse.add(onGround(projection, geo, back));
        }
    }
    if (!line.datum.empty()) {
        const EpsgTransformation transformation(transformationOf(line.datum));
        for (const TQPoint& geo : reference.points()) {
            TQPoint global;
            projection.convertGeoPt(geo, global);
            result.shifted.add(planeDistance(global, reference.forward(transformation.toLocal(geo))));
        }
    }
    return result;
}

/// The projection of a line of the list, which the manager owns; null when it has none.
inline TQProjection* projectionOf(TQProjMgr& manager, const CodeLine& line) {
    return manager.projWithName(TQString(line.name.c_str()), false);
}

} // namespace resourcetree
