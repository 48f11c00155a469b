#include "projections/SideBySide.h"
#include "support/TQDirectory.h"

#include <gtest/gtest.h>
#include <proj.h>

#include <cmath>
#include <set>
#include <string>

// The projections beside PROJ on 20,000 random points for each system, area and direction. What may differ
// follows from the published form of each, point by point; docs/accuracy.md has the differences measured.

using sidebyside::Area;
using sidebyside::compareForward;
using sidebyside::compareInverse;
using sidebyside::System;
using sidebyside::systems;

namespace {

// Some ten roundings of plane coordinates and of products up to 3e7 m, each half a unit in the last
// place of 3.7e-9 m at the most, in the library and in PROJ together.
constexpr double kPlaneRounding = 2e-8;

// The same for geographic coordinates: some ten roundings of angles up to pi, 2.2e-16 rad each.
constexpr double kGroundRounding = 10 * 2.2e-16 * 6.4e6;

/// What is left of the latitude when its iteration stops, in metres: a pass changes it by the tolerance
/// at most, and each pass that is left out changes it by e²/(1 - e²) of the one before at most.
double latitudeStop(const System& system, double tolerance) {
    const double e2 = system.projection->ellipsoid()->eccentricitySquared();
    const double ratio = e2 / (1.0 - e2);
    return system.metres(tolerance * ratio / (1.0 - ratio));
}

bool isTransverse(const System& system) { return system.projection->isKindOf("TQPrMercTransv") != 0; }

double parameter(const System& system, const char* name, double otherwise) {
    HashTbl<TQProjParam> table;
    system.projection->getParams(table);
    const TQProjParam* found = table.lookup(name);
    return found != nullptr ? found->doubleValue() : otherwise;
}

/// The bound of the difference at each point for one direction of a system.
class Tolerance {
  public:
    explicit Tolerance(const System& system)
        : _system(system), _truncation(system.projection->ellipsoid()->semiMajorAxis(),
                                       system.projection->ellipsoid()->eccentricitySquared()),
          _e(std::sqrt(system.projection->ellipsoid()->eccentricitySquared())),
          _lambda0(tq_deg2rad(parameter(system, "lambda0", 0.0))),
          _phi0(tq_deg2rad(parameter(system, "phi0", 0.0))) {
        TQPoint origin;
        system.projection->convertGeoPt(TQPoint{_lambda0, 0.0}, origin);
        _origin = origin;
    }

    double forward(const TQPoint& geo) const {
        if (!isTransverse(_system)) {
            return kPlaneRounding;
        }
        const double tanChi =
            std::sinh(static_cast<double>(literal::isometricLatitude(static_cast<literal::Real>(geo.y), _e)));
        const double cosDelta = std::cos(geo.x - _lambda0);
        const double xi = std::atan2(tanChi, cosDelta);
        const double eta = std::asinh(std::sin(geo.x - _lambda0) / std::hypot(tanChi, cosDelta));
        return _truncation.forward(xi, eta) + arc() + kPlaneRounding;
    }

    double inverse(const TQPoint& global) const {
        const double stop = latitudeStop(_system, isGctp() ? 1e-10 : 1e-11);
        if (!isTransverse(_system)) {
            return stop + kGroundRounding;
        }
        const double radius = _system.projection->ellipsoid()->semiMajorAxis();
        const double xi = (global.y - _origin.y) / radius;
        const double eta = (global.x - _origin.x) / radius;
        return stop + _truncation.inverse(xi, eta) + arc() + kGroundRounding;
    }

  private:
    bool isGctp() const { return _system.projection->isKindOf("TQPrMercDirectGCTP") != 0; }
    double arc() const { return _phi0 == 0.0 ? 0.0 : _truncation.arc(); }

    const System& _system;
    SeriesTruncation _truncation;
    double _e;
    double _lambda0;
    double _phi0;
    TQPoint _origin;
};

} // namespace

class ProjSideBySide : public testing::TestWithParam<std::size_t> {
  protected:
    void SetUp() override { ASSERT_NE(system().projection, nullptr) << system().name << " cannot be read"; }

    const System& system() const { return systems()[GetParam()]; }

    void expectAgreement(const Area& area, const std::string& algorithm = "") const {
        const ProjOperation proj = system().proj(algorithm);
        const Tolerance tolerance(system());
        int beyond = 0;
        double worst = 0.0;
        const auto count = [&](double difference, double allowed) {
            beyond += difference <= allowed ? 0 : 1;
            worst = std::fmax(worst, difference / allowed);
        };
        compareForward(system(), proj, area, [&](const TQPoint& geo, double difference) {
            count(difference, tolerance.forward(geo));
        });
        EXPECT_EQ(beyond, 0) << "forward; worst difference over tolerance: " << worst;
        beyond = 0;
        worst = 0.0;
        compareInverse(system(), proj, area, [&](const TQPoint& global, double difference) {
            count(difference, tolerance.inverse(global));
        });
        EXPECT_EQ(beyond, 0) << "inverse; worst difference over tolerance: " << worst;
    }
};

TEST_P(ProjSideBySide, AgreesWhereTheSystemIsUsed) { expectAgreement(system().usual); }

TEST_P(ProjSideBySide, AgreesFarBeyondWithinTheTruncationOfTheSeries) { expectAgreement(system().wide); }

// The default algorithm of PROJ's transverse Mercator is set in a file of its installation.
TEST_P(ProjSideBySide, AgreesWithTheExactAlgorithmWhereThereIsAChoice) {
    expectAgreement(system().usual, isTransverse(system()) ? " +algo=poder_engsager" : "");
}

INSTANTIATE_TEST_SUITE_P(Systems, ProjSideBySide,
                         testing::Range<std::size_t>(0, sidebyside::systems().size()),
                         [](const auto& instance) {
                             std::string name;
                             for (const char c : systems()[instance.param].name) {
                                 name += std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
                             }
                             return name;
                         });

TEST(ProjectionFiles, EachOneStandsBesideProj) {
    std::set<std::string> inDirectory;
    for (const TQString& name : TQOpenDir(projectionFileDirectory(), "proj")) {
        inDirectory.insert(name.utf8());
    }
    std::set<std::string> compared;
    for (const auto& filed : sidebyside::filedSystems()) {
        compared.insert(std::string(filed.name) + ".proj");
    }
    EXPECT_EQ(inDirectory, compared);
}

// The truncation that the tolerances come from, against the size of its first term: the largest neglected
// coefficient is below e^10 / 64 (in our form, next to the arc's), so that near the central meridian the
// series are good to a few micrometres.
TEST(SeriesTruncation, IsOfTheTenthPowerOfTheEccentricity) {
    const SeriesTruncation truncation(wgs84.a, wgs84.e2);
    const double tenthPower = wgs84.a * std::pow(wgs84.e2, 5);
    EXPECT_LT(truncation.forward(1.5, 0.05), tenthPower / 20.0);
    EXPECT_GT(truncation.forward(1.5, 0.05), tenthPower / 2000.0);
}
