#include "manager/TQProjectionFactory.h"
#include "projection/TQProjection.h"
#include "projections/formulas/IsometricLatitude.h"
#include "testing/CapturedMessages.h"
#include "testing/ProjectionTables.h"
#include "testing/RandomNumbers.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <iomanip>
#include <limits>
#include <memory>
#include <numbers>
#include <span>
#include <sstream>
#include <string>

// Every conversion ends, soon and with an answer, whatever projection and point it is given.

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kHalfPi = kPi / 2.0;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kSmallest = std::numeric_limits<double>::denorm_min();
constexpr double kA = 6378137.0;

constexpr double kOrdinaryParameters[] = {1.0, 2.0, 10.0, 46.5, 49.0, 60.0, -33.0};
constexpr double kHostileParameters[] = {0.0,         45.0, 45.0,  -45.0, 90.0,      -90.0,     180.0,
                                         1.0 - 1e-12, 1.0,  1e308, kNaN,  kInfinity, -kInfinity};
constexpr double kEccentricitiesSquared[] = {0.0, 0.0067, 0.0067, 0.0067, 0.02, -1.0, kNaN};
constexpr double kTinyParameters[] = {1e-9, 0.01, kSmallest};
constexpr double kEccentricitiesSquaredOfNeedles[] = {0.9999, 0.9999999, 1.0};

/// What parameters, besides ordinary ones, and the ellipsoid of a projection are drawn from.
struct Numbers {
    std::span<const double> parameters;
    std::span<const double> eccentricitiesSquared;
};
constexpr Numbers kHostile{kHostileParameters, kEccentricitiesSquared};

/// On a needle, and with a tiny latitude scale factor, a latitude takes up to ten thousand passes.
constexpr Numbers kSlow{kTinyParameters, kEccentricitiesSquaredOfNeedles};

/// Numbers that no coordinate should be, and 0.
constexpr double kStrange[] = {0.0,  -0.0,  kSmallest, -kSmallest, 1e-300,     1e-17, 1e9,
                               1e17, 1e308, -1e308,    kInfinity,  -kInfinity, kNaN};

class HostileProjection {
  public:
    /// A projection of a class with every parameter, and the ellipsoid, drawn from numbers.
    HostileProjection(int typeCode, const Numbers& numbers, RandomNumbers& random)
        : _ellipsoid(TQString("Hostile"), random.between(0.0, 20.0) < 1.0 ? 0.0 : kA,
                     oneOf(numbers.eccentricitiesSquared, random)),
          _projection(tq_newProjectionOfType(typeCode)) {
        drawFlags(random);
        drawNumbers(random.between(0.0, 1.0) < 0.5 ? numbers.parameters : std::span(kOrdinaryParameters),
                    random);
        _projection->setEllipsoid(&_ellipsoid);
        _centre = _projection->center();
    }

    const TQProjection& operator*() const { return *_projection; }
    const TQProjection* operator->() const { return _projection.get(); }

    /// A geographic point: ordinary, beside a pole, the equator or the antimeridian, or strange.
    static TQPoint geographicPoint(RandomNumbers& random) {
        return {coordinate(kPi, {0.0, kPi, -kPi, kHalfPi}, 4e-16, random),
                coordinate(kHalfPi, {kHalfPi, -kHalfPi, 0.0, radians89}, 4e-16, random)};
    }

    /// A plane point: ordinary, beside the centre, or strange.
    TQPoint planePoint(RandomNumbers& random) const {
        const double distance = std::pow(10.0, random.between(-12.0, 3.0));
        return {coordinate(3e7, {_centre.x, 0.0, 500000.0, _centre.x}, distance, random),
                coordinate(2e7, {_centre.y, 0.0, 1e7, _centre.y}, distance, random)};
    }

    /// What the projection is, for a test that fails.
    std::string definition() const {
        std::ostringstream text;
        text << _projection->className() << ", e2 " << _ellipsoid.eccentricitySquared() << ", a "
             << _ellipsoid.semiMajorAxis();
        for (const ListedParameter& parameter : listedParameters(*_projection)) {
            text << ", " << parameter;
        }
        return text.str();
    }

  private:
    // The flags come first: they decide which numbers there are.
    void drawFlags(RandomNumbers& random) {
        ParameterTable table;
        for (const ListedParameter& parameter : listedParameters(*_projection)) {
            if (parameter.type == "Logical") {
                table.with(parameter.name.c_str(), Logical(random.between(0.0, 1.0) < 0.5));
            }
        }
        for (const char* name : {"HotineFlag", "AzimuthAtOriginFlag"}) { // listed only when they are set
            if (random.between(0.0, 1.0) < 0.5) {
                table.with(name, Logical(true));
            }
        }
        _projection->setParams(table.table());
    }

    void drawNumbers(std::span<const double> numbers, RandomNumbers& random) {
        ParameterTable table;
        for (const ListedParameter& parameter : listedParameters(*_projection)) {
            if (parameter.type == "Logical") {
                table.with(parameter.name, parameter.type, parameter.value);
            } else if (parameter.type == "Double") {
                table.with(parameter.name.c_str(), oneOf(numbers, random));
            }
        }
        _projection->setParams(table.table());
    }

    static constexpr double radians89 = kPi * 89.0 / 180.0;

    static double oneOf(std::span<const double> numbers, RandomNumbers& random) {
        return numbers[static_cast<std::size_t>(random.between(0.0, static_cast<double>(numbers.size())))];
    }

    static double coordinate(double range, const std::array<double, 4>& special, double distance,
                             RandomNumbers& random) {
        const double kind = random.between(0.0, 1.0);
        if (kind < 0.5) {
            return random.between(-range, range);
        }
        return kind < 0.8 ? oneOf(special, random) + random.between(-distance, distance)
                          : oneOf(kStrange, random);
    }

    TQEllipsoid _ellipsoid;
    std::unique_ptr<TQProjection> _projection;
    TQPoint _centre;
};

/// Tells when a class takes too long altogether; looked at after every point.
class Deadline {
  public:
    bool isPast() const { return std::chrono::steady_clock::now() > _end; }

  private:
    static constexpr std::chrono::seconds limit{120};
    std::chrono::steady_clock::time_point _end = std::chrono::steady_clock::now() + limit;
};

std::string describe(const TQPoint& point) {
    std::ostringstream text;
    text << std::setprecision(17) << "at (" << point.x << ", " << point.y << ")";
    return text.str();
}

class EveryConversionEnds : public testing::TestWithParam<int> {
  protected:
    /// Draws projections of the class and, for each, points; `check` takes a projection.
    template <class Check>
    void forHostileProjections(int count, int points, const Numbers& numbers, const Check& check) {
        for (int i = 0; i < count; ++i) {
            const HostileProjection projection(GetParam(), numbers, _random);
            for (int j = 0; j < points; ++j) {
                check(projection);
                ASSERT_FALSE(_deadline.isPast()) << projection.definition();
                ASSERT_FALSE(HasFailure()) << projection.definition();
            }
        }
    }

    void convertToThePlane(const HostileProjection& projection) {
        const TQPoint geo = HostileProjection::geographicPoint(_random);
        TQPoint global;
        const int code = projection->convertGeoPt(geo, global);
        EXPECT_TRUE(code == 0 || code == -1) << describe(geo);
    }

    void convertBack(const HostileProjection& projection) {
        const TQPoint global = projection.planePoint(_random);
        TQAnglePoint geo(1.0, 2.0, TQUnitRadian);
        const int code = projection->convertGlobalPt(global, geo, TQUnitRadian);
        EXPECT_TRUE(code == 0 || code == -1) << describe(global);
        EXPECT_TRUE(std::isfinite(geo.longitude().value()) && std::isfinite(geo.latitude().value()))
            << describe(global);
    }

    RandomNumbers _random{static_cast<std::uint64_t>(GetParam()) + 1U};
    Deadline _deadline;
    CapturedMessages _messages;
};

} // namespace

// Three hundred nanoseconds a pass.
TEST(EveryIterationEnds, WithinTenThousandPasses) {
    int passes = 0;
    const auto count = [&passes](double value) {
        ++passes;
        return value + 1.0;
    };
    tq::formulas::iterate(0.0, tq::formulas::mercatorStop.tolerance, tq::formulas::mercatorStop.passLimit,
                          count);
    EXPECT_LE(passes, 10'000);
}

INSTANTIATE_TEST_SUITE_P(Class, EveryConversionEnds,
                         testing::Values(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 15));

TEST_P(EveryConversionEnds, OnTheWayToThePlane) {
    forHostileProjections(500, 200, kHostile,
                          [this](const auto& projection) { convertToThePlane(projection); });
}

TEST_P(EveryConversionEnds, OnTheWayBack) {
    forHostileProjections(500, 200, kHostile, [this](const auto& projection) { convertBack(projection); });
}

TEST_P(EveryConversionEnds, WhereItIsSlow) {
    forHostileProjections(60, 1, kSlow, [this](const auto& projection) {
        convertToThePlane(projection);
        convertBack(projection);
    });
}

TEST_P(EveryConversionEnds, ForTheDirectionsOfNorthMeridianAndParallel) {
    forHostileProjections(60, 5, kHostile, [this](const HostileProjection& projection) {
        const TQPoint point = HostileProjection::geographicPoint(_random);
        const TQAnglePoint geo(point, TQUnitRadian);
        projection->northAngleAt(point);
        projection->parallelTangentAt(geo);
        projection->meridianTangentAt(geo);
    });
}

TEST_P(EveryConversionEnds, ForTheExtentOfARectangle) {
    forHostileProjections(20, 1, kHostile, [this](const HostileProjection& projection) {
        projection->computeKilographicalLimitFromGeo(
            TQAnglePoint(HostileProjection::geographicPoint(_random), TQUnitRadian),
            TQAnglePoint(HostileProjection::geographicPoint(_random), TQUnitRadian));
    });
}
