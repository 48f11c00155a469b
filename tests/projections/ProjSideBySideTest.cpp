#include "projections/SideBySide.h"
#include "support/TQDirectory.h"
#include "tools/tqresources/CodeList.h"

#include <gtest/gtest.h>
#include <proj.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <set>
#include <string>

// The projections beside PROJ on 20,000 random points for each system, area and direction. What may differ
// follows from the published form of each, point by point; docs/accuracy.md has the differences measured.

using sidebyside::Area;
using sidebyside::compareForward;
using sidebyside::compareInverse;
using sidebyside::pointForWayBack;
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

double parameter(const System& system, const char* name) {
    HashTbl<TQProjParam> table;
    system.projection->getParams(table);
    const TQProjParam* found = table.lookup(name);
    return found != nullptr ? found->doubleValue() : 0.0;
}

/// What a published form may differ by from PROJ's, in metres, besides rounding; nothing unless a class
/// says otherwise.
class Form {
  public:
    explicit Form(const System& system)
        : _system(system), _a(system.projection->ellipsoid()->semiMajorAxis()),
          _e2(system.projection->ellipsoid()->eccentricitySquared()) {}
    virtual ~Form() = default;

    /// On the way to the plane.
    virtual double forward(const TQPoint& /*geo*/) const { return 0.0; }
    /// On the way back, on the ground.
    virtual double inverse(const TQPoint& /*global*/) const { return 0.0; }
    /// By how much roundings grow at a point.
    virtual double growth(const TQPoint& /*geo*/, const TQPoint& /*global*/) const { return 1.0; }

  protected:
    double parameter(const char* name) const { return ::parameter(_system, name); }

    const System& _system;
    double _a;
    double _e2;
};

class DirectMercatorForm : public Form {
  public:
    using Form::Form;
    double inverse(const TQPoint& /*global*/) const override {
        return latitudeStop(_system, _system.isOf("TQPrMercDirectGCTP") ? 1e-10 : 1e-11);
    }
};

class TransverseMercatorForm : public Form {
  public:
    explicit TransverseMercatorForm(const System& system)
        : Form(system), _truncation(_a, _e2), _lambda0(tq_deg2rad(parameter("lambda0"))),
          _arc(parameter("phi0") == 0.0 ? 0.0 : _truncation.arc()) {
        system.projection->convertGeoPt(TQPoint{_lambda0, 0.0}, _origin);
    }
    double forward(const TQPoint& geo) const override {
        const double tanChi = std::sinh(static_cast<double>(
            literal::isometricLatitude(static_cast<literal::Real>(geo.y), std::sqrt(_e2))));
        const double cosDelta = std::cos(geo.x - _lambda0);
        const double xi = std::atan2(tanChi, cosDelta);
        const double eta = std::asinh(std::sin(geo.x - _lambda0) / std::hypot(tanChi, cosDelta));
        return _truncation.forward(xi, eta) + _arc;
    }
    double inverse(const TQPoint& global) const override {
        const double xi = (global.y - _origin.y) / _a;
        const double eta = (global.x - _origin.x) / _a;
        return latitudeStop(_system, 1e-11) + _truncation.inverse(xi, eta) + _arc;
    }

  private:
    SeriesTruncation _truncation;
    double _lambda0;
    double _arc;
    TQPoint _origin;
};

class LambertForm : public Form {
  public:
    using Form::Form;
    // The latitude is taken before the pass that changes the isometric latitude by 1e-10 at most.
    double inverse(const TQPoint& /*global*/) const override {
        return 1e-10 * _a + latitudeStop(_system, 1e-10);
    }
    // The radius of a parallel; in it the isometric latitude towards a pole, and the cone constant of two
    // parallels, whose isometric latitudes cancel.
    double growth(const TQPoint& geo, const TQPoint& global) const override {
        const TQPoint apex = _system.projection->center();
        const double radius = planeDistance(global, apex) / _a;
        const double parallels = std::abs(tq_deg2rad(parameter("stdPar1") - parameter("stdPar2")));
        return 1.0 + radius * (1.0 / std::cos(geo.y) + (parallels > 0.0 ? 1.0 / parallels : 0.0));
    }
};

class HotineForm : public Form {
  public:
    // The way back turns by the bearing of the grid where the azimuth at the natural origin is meant.
    explicit HotineForm(const System& system) : Form(system) {
        const double phiC = tq_deg2rad(parameter("latitudeCenter"));
        const double sinPhi = std::sin(phiC);
        const double cosPhi = std::cos(phiC);
        const double b = std::sqrt(1.0 + _e2 * std::pow(cosPhi, 4) / (1.0 - _e2));
        const double d = b * std::sqrt(1.0 - _e2) / (cosPhi * std::sqrt(1.0 - _e2 * sinPhi * sinPhi));
        const double gamma0 = std::asin(std::sin(tq_deg2rad(parameter("azimuth"))) / d);
        _turn = std::abs(std::remainder(gamma0 - tq_deg2rad(parameter("bearing")), 2.0 * std::numbers::pi));
    }
    double inverse(const TQPoint& /*global*/) const override {
        const double form = 1.01; // of the ellipsoid, which is turned like a sphere
        return form * _turn * _a + latitudeStop(_system, 1e-10);
    }

  private:
    double _turn;
};

class SwissForm : public Form {
  public:
    using Form::Form;
    // Eastings, latitudes and longitudes are arcsines: they lose accuracy towards 90 degrees.
    double growth(const TQPoint& geo, const TQPoint& global) const override {
        const double longitude = geo.x - tq_deg2rad(parameter("longitudeCenter"));
        return 1.0 / std::abs(std::cos((global.x - parameter("falseEasting")) / _a)) +
               1.0 / std::abs(std::cos(geo.y) * std::cos(longitude));
    }
};

class BonneForm : public Form {
  public:
    using Form::Form;
    // The meridian arc leaves out the terms of e⁸, of which Snyder's equation 3-21 has the first; it
    // enters at the point and at the standard parallel.
    double forward(const TQPoint& /*geo*/) const override {
        const double terms = 175.0 / 16384 * std::numbers::pi / 2 + 105.0 / 4096 + 525.0 / 16384 +
                             175.0 / 12288 + 315.0 / 131072;
        return 2.0 * _a * std::pow(_e2, 4) * terms;
    }
    double inverse(const TQPoint& /*global*/) const override { return forward({}); }
};

class CassiniForm : public Form {
  public:
    using Form::Form;
    // The way back has 696 where Snyder's equation 3-26 has 96. The series in the distance D from the
    // central meridian leave out terms of e²·D⁴ and D⁶.
    double inverse(const TQPoint& global) const override {
        const double b = std::sqrt(1.0 - _e2);
        const double e1 = (1.0 - b) / (1.0 + b);
        const double divisor = 151.0 * e1 * e1 * e1 * (1.0 / 96.0 - 1.0 / 696.0);
        const double distance = (global.x - parameter("X0")) / _a;
        return _a * (divisor + _e2 * std::pow(distance, 4) + std::pow(distance, 6));
    }
};

class StereographicForm : public Form {
  public:
    using Form::Form;
    double inverse(const TQPoint& /*global*/) const override { return latitudeStop(_system, 1e-6); }
    double growth(const TQPoint& /*geo*/, const TQPoint& global) const override {
        return 1.0 + planeDistance(global, _system.projection->center()) / _a;
    }
};

class GnomonicForm : public Form {
  public:
    using Form::Form;
    // The tangent of the distance from the pole.
    double growth(const TQPoint& /*geo*/, const TQPoint& global) const override {
        return 1.0 + std::pow(planeDistance(global, _system.projection->center()) / _a, 2);
    }
};

template <class OfClass>
std::unique_ptr<Form> makeForm(const System& system) {
    return std::make_unique<OfClass>(system);
}

std::unique_ptr<Form> formOf(const System& system) {
    struct Entry {
        const char* className;
        std::unique_ptr<Form> (*make)(const System&);
    };
    static constexpr Entry entries[] = {
        {"TQPrMercTransv", makeForm<TransverseMercatorForm>},
        {"TQPrMercDirect", makeForm<DirectMercatorForm>},
        {"TQPrLambert", makeForm<LambertForm>},
        {"TQPrObliqueMercator", makeForm<HotineForm>},
        {"TQPrSwissObliqueMercator", makeForm<SwissForm>},
        {"TQPrBonne", makeForm<BonneForm>},
        {"TQPrCassiniSoldner", makeForm<CassiniForm>},
        {"TQPrPolarStereo", makeForm<StereographicForm>},
        {"TQPrPolarGnomon", makeForm<GnomonicForm>},
        {"TQProjection", makeForm<Form>},
    };
    for (const Entry& entry : entries) {
        if (system.isOf(entry.className)) {
            return entry.make(system);
        }
    }
    return nullptr;
}

/// The bound of the difference at each point for one system: its form, its file, and rounding.
class Tolerance {
  public:
    explicit Tolerance(const System& system) : _system(system), _form(formOf(system)) {}

    double forward(const TQPoint& geo) const {
        TQPoint global;
        _system.projection->convertGeoPt(geo, global);
        return _form->forward(geo) + (_system.fileRounding + kPlaneRounding) * _form->growth(geo, global);
    }
    double inverse(const TQPoint& global) const {
        TQPoint geo;
        _system.projection->convertGlobalPt(pointForWayBack(_system, global), geo);
        return _form->inverse(global) + _system.fileRounding + kGroundRounding * _form->growth(geo, global);
    }

  private:
    const System& _system;
    std::unique_ptr<Form> _form;
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
    expectAgreement(system().usual, system().isOf("TQPrMercTransv") ? " +algo=poder_engsager" : "");
}

INSTANTIATE_TEST_SUITE_P(Systems, ProjSideBySide,
                         testing::Range<std::size_t>(0, sidebyside::systems().size()),
                         [](const auto& instance) {
                             return sidebyside::identifierOf(systems()[instance.param]);
                         });

// Here, or as a system of the generated tree (tests/resources).
TEST(ProjectionFiles, EachOneStandsBesideProj) {
    std::set<std::string> inDirectory;
    for (const TQString& name : TQOpenDir(projectionFileDirectory(), "proj")) {
        inDirectory.insert(name.utf8());
    }
    std::set<std::string> compared;
    for (const auto& filed : sidebyside::filedSystems()) {
        compared.insert(std::string(filed.name) + ".proj");
    }
    for (const CodeLine& line : readCodeList(TQ_RESOURCE_LISTS "/projections.tsv")) {
        std::string name = line.name + ".proj";
        std::ranges::replace(name, '/', '_');
        compared.insert(name);
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
