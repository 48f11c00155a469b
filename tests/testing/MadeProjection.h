#pragma once

#include "ellipsoid/TQEllipsoid.h"
#include "manager/TQProjParam.h"
#include "manager/TQProjectionFactory.h"
#include "projection/TQProjection.h"
#include "support/HashTbl.h"
#include "support/TQPath.h"
#include "support/TQSharedDirectory.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

/// The size of a reference ellipsoid.
struct EllipsoidSize {
    const char* name;
    double a;  ///< semi-major axis in metres
    double e2; ///< first eccentricity squared

    static constexpr EllipsoidSize ofInverseFlattening(const char* name, double a, double inverseFlattening) {
        return {name, a, (2.0 - 1.0 / inverseFlattening) / inverseFlattening};
    }
};

// Sizes as the EPSG data set defines them.
inline constexpr auto wgs84 = EllipsoidSize::ofInverseFlattening("WGS 84", 6378137.0, 298.257223563);
inline constexpr auto wgs72 = EllipsoidSize::ofInverseFlattening("WGS 72", 6378135.0, 298.26);
inline constexpr auto airy1830 = EllipsoidSize::ofInverseFlattening("Airy 1830", 6377563.396, 299.3249646);
inline constexpr auto bessel1841 =
    EllipsoidSize::ofInverseFlattening("Bessel 1841", 6377397.155, 299.1528128);
inline constexpr auto international1924 =
    EllipsoidSize::ofInverseFlattening("International 1924", 6378388.0, 297.0);
inline constexpr auto grs1980 = EllipsoidSize::ofInverseFlattening("GRS 1980", 6378137.0, 298.257222101);
inline constexpr auto everest1830 =
    EllipsoidSize::ofInverseFlattening("Everest 1830 (1967 Definition)", 6377298.556, 300.8017);
inline constexpr auto krassowsky1940 =
    EllipsoidSize::ofInverseFlattening("Krassowsky 1940", 6378245.0, 298.3);

/// A projection together with the ellipsoid it stands on.
class MadeProjection {
  public:
    /// The name of a parameter and its value.
    using Parameter = std::pair<const char*, double>;

    /// A projection of a class of the library, made the way an application makes one.
    MadeProjection(int typeCode, const EllipsoidSize& size, const std::vector<Parameter>& parameters = {})
        : _ellipsoid(std::make_unique<TQEllipsoid>(TQString(size.name), size.a, size.e2)),
          _projection(tq_newProjectionOfType(typeCode)) {
        _projection->setEllipsoid(_ellipsoid.get());
        set(parameters);
    }

    /// A projection that needs no ellipsoid.
    explicit MadeProjection(std::unique_ptr<TQProjection> projection) : _projection(std::move(projection)) {}

    /// Sets parameters; "hemisphere" is the one that is no double.
    void set(const std::vector<Parameter>& parameters) {
        HashTbl<TQProjParam> table(1);
        for (const auto& [name, value] : parameters) {
            const TQString key(name);
            const bool isLogical = std::string(name) == "hemisphere";
            table.add(isLogical ? std::make_unique<TQProjParam>(key, Logical(value == 1.0), TQString())
                                : std::make_unique<TQProjParam>(key, value, TQString()),
                      key);
        }
        _projection->setParams(table);
    }

    TQProjection& operator*() const { return *_projection; }
    TQProjection* operator->() const { return _projection.get(); }
    TQEllipsoid& ellipsoid() const { return *_ellipsoid; }

  private:
    std::unique_ptr<TQEllipsoid> _ellipsoid;
    std::unique_ptr<TQProjection> _projection;
};

/// The directory of the projection files that come with the library.
inline TQString projectionFileDirectory() {
    return tq_createPath(TQGetApplicationSharedDirectory(), "resProj", "Projection");
}
