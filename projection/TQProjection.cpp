#include "projection/TQProjection.h"

#include "ellipsoid/TQEllipsoid.h"
#include "projection/TQDomainCheck.h"
#include "projection/TQPlaneMeasures.h"
#include "projection/TQPointRuns.h"
#include "projection/TQProjectionStatement.h"
#include "support/TQArchiveBlock.h"
#include "support/TQFile.h"
#include "support/TQMessageScope.h"
#include "support/TQMessages.h"
#include "support/TQReadStream.h"
#include "support/TQUnit.h"
#include "support/TQWriteStream.h"

#include <cmath>
#include <numbers>
#include <optional>
#include <utility>

namespace {

constexpr int nameMissing = 5025;

constexpr TQTextBlock textBlock = TQProjectionStatement::commonTextBlock(TQProjection::ownName);

std::unique_ptr<TQString> unarchivedName(TQReadStream* stream, int version) {
    if (version == 0) {
        return std::make_unique<TQString>(tq_readCountedString(stream));
    }
    return TQString::unarchiveFrom(stream);
}

/// Adds a parameter whose value is a text; a null text counts as empty.
void addText(HashTbl<TQProjParam>& table, const char* name, const TQString* text) {
    const TQString value = tq_textOfName(text);
    table.add(std::make_unique<TQProjParam>(TQString(name), value, TQString()), TQString(name));
}

/// Whether an ellipsoid is what stands in the text of a projection that has none.
bool isNone(const TQEllipsoid& ellipsoid) {
    return tq_textOfName(ellipsoid.name()).isEmpty() && ellipsoid.semiMajorAxis() == 0.0;
}

void appendWktValue(TQString& text, double value) { text.appendWithFormat("%.13g", value); }

void appendWktValue(TQString& text, const char* value) { text.append(value); }

void eachToPlane(const TQProjection& projection, std::span<TQPoint> points, std::span<signed char> statuses) {
    for (std::size_t index = 0; index < points.size(); ++index) {
        TQPoint global = tq_noPoint;
        statuses[index] = projection.convertGeoPt(points[index], global) == 0 ? 0 : -1;
        points[index] = global;
    }
}

void eachToGeographic(const TQProjection& projection, std::span<TQPoint> points,
                      std::span<signed char> statuses) {
    for (std::size_t index = 0; index < points.size(); ++index) {
        TQPoint geo = tq_noPoint;
        statuses[index] = projection.convertGlobalPt(points[index], geo) == 0 ? 0 : -1;
        points[index] = geo;
    }
}

} // namespace

TQProjection::TQProjection() = default;

// How a class converts many points is not copied: the copy may be of another class.
TQProjection::TQProjection(const TQProjection& other)
    : TQObject(other), _registrationState(other._registrationState), _ellipsoid(other._ellipsoid),
      _isResource(other._isResource), _isUserDefined(other._isUserDefined) {
    if (other._name) {
        _name = std::make_unique<TQString>(*other._name);
    }
    if (other._pendingEllipsoidName) {
        _pendingEllipsoidName = std::make_unique<TQString>(*other._pendingEllipsoidName);
    }
}

TQProjection::~TQProjection() = default;

bool TQProjection::isEqual(const TQObject* other) const {
    const auto* that = dynamic_cast<const TQProjection*>(other);
    return that != nullptr && tq_namesAreEqual(name(), that->name()) && hasSameDefinition(*that);
}

void TQProjection::archiveTo(TQWriteStream* stream) const {
    const TQString none;
    const TQString* const pending = _pendingEllipsoidName != nullptr ? _pendingEllipsoidName.get() : &none;
    stream->declareVersion("TQProjection", 1);
    TQString::archive(name(), stream);
    TQString::archive(_ellipsoid != nullptr ? _ellipsoid->name() : pending, stream);
}

void TQProjection::unarchiveFrom(TQReadStream* stream) {
    const int version = tq_readKnownVersion(stream, "TQProjection", 1);
    if (version < 0) {
        return;
    }
    takeName(unarchivedName(stream, version));
    _ellipsoid = nullptr;
    _pendingEllipsoidName = unarchivedName(stream, version);
}

int TQProjection::initConstants() { return 0; }

TQString TQProjection::WKTProjectionStuff() const {
    if (_ellipsoid == nullptr) {
        return TQString();
    }
    TQString ellipsoidName = tq_textOfName(_ellipsoid->name());
    ellipsoidName.replace(U' ', U'_');
    TQString text;
    text.setWithFormat("GEOGCS[\"%s\",DATUM[\"D_%s\",SPHEROID[\"%s", ellipsoidName, ellipsoidName,
                       ellipsoidName);
    text.appendWithFormat("\",%.13g,%.13g]", _ellipsoid->semiMajorAxis(), _ellipsoid->inverseFlattening());
    if (_ellipsoid->hasDatumShift()) {
        const auto [dx, dy, dz, rx, ry, rz, scalePpm] = _ellipsoid->datumShiftParameters();
        text.appendWithFormat(",TOWGS84[%.13g,%.13g,%.13g,%.13g,%.13g,%.13g,%.13g]", dx, dy, dz, rx, ry, rz,
                              scalePpm);
    }
    text.append("],PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]]");
    return text;
}

signed char TQProjection::projectionType() const { return -1; }

TQString TQProjection::typeName() const { return TQString("unknown"); }

TQProjection* TQProjection::initFromStream(TQReadStream* stream) {
    unarchiveFrom(stream);
    return this;
}

void TQProjection::getParams(HashTbl<TQProjParam>& table) const {
    const TQString type("Type");
    table.add(std::make_unique<TQProjParam>(type, static_cast<int>(projectionType()), TQString()), type);
    addText(table, "Nom", name());
    if (_ellipsoid != nullptr) {
        addText(table, "Ellipsoide", _ellipsoid->name());
    }
}

void TQProjection::setParams(const HashTbl<TQProjParam>& table) {
    const TQProjParam* given = table.lookup("Nom");
    if (given != nullptr && given->stringValue() != nullptr) {
        rename(*given->stringValue());
    }
}

bool TQProjection::hasSameDefinition(const TQProjection& other) const {
    if (projectionType() != other.projectionType()) {
        return false;
    }
    return _ellipsoid != nullptr ? _ellipsoid->isEqual(other._ellipsoid) : other._ellipsoid == nullptr;
}

int TQProjection::loadFromFile(TQFile& file, bool withHeader) {
    int version = 0;
    if (const int code = textBlock.beginReading(file, withHeader, version)) {
        return code;
    }
    TQString line;
    if (file.readLine(line) != 0) {
        return file.failReading(nameMissing, "the line of the name is missing");
    }
    rename(line);
    if (_ellipsoid == nullptr) {
        auto ellipsoid = std::make_unique<TQEllipsoid>();
        _ellipsoid = ellipsoid.get();
        _ownedEllipsoid.reset(std::move(ellipsoid));
    }
    _pendingEllipsoidName.reset();
    const int code = _ellipsoid->loadFromFile(file);
    if (code == 0 && isNone(*_ellipsoid)) {
        _ellipsoid = nullptr;
        _ownedEllipsoid.reset(nullptr);
    }
    return code;
}

int TQProjection::writeToFile(TQFile& file, bool withHeader) const {
    if (const int code = textBlock.beginWriting(file, withHeader)) {
        return code;
    }
    if (file.writeLine(tq_textOfName(name())) != 0) {
        return textBlock.writeFailed;
    }
    const TQEllipsoid none;
    return (_ellipsoid != nullptr ? *_ellipsoid : none).writeToFile(file);
}

int TQProjection::convertGeoPt(const TQPoint& /*geo*/, TQPoint& /*global*/) const { return 0; }

int TQProjection::convertGlobalPt(const TQPoint& /*global*/, TQPoint& /*geo*/) const { return 0; }

double TQProjection::northAngleAt(const TQPoint& geo) const {
    return TQPlaneMeasures(*this).northAngleAt(geo);
}

bool TQProjection::isGeoPtValid(const TQPoint& /*geo*/) const { return true; }

bool TQProjection::isGlobalPtValid(const TQPoint& /*global*/) const { return true; }

int TQProjection::meridianShape() const { return GeneralCurve; }

int TQProjection::parallelShape() const { return GeneralCurve; }

bool TQProjection::northPolePosition(TQPoint& /*position*/) const { return false; }

bool TQProjection::southPolePosition(TQPoint& /*position*/) const { return false; }

TQPoint TQProjection::center() const {
    tq_perror("TQProjection::center(): no valid method.\n");
    return TQPoint();
}

void TQProjection::setEllipsoid(TQEllipsoid* ellipsoid) {
    _ellipsoid = ellipsoid;
    _pendingEllipsoidName.reset();
    if (ellipsoid != nullptr) {
        initConstants();
    }
}

bool TQProjection::needsDatumShift() const { return _ellipsoid != nullptr && _ellipsoid->hasDatumShift(); }

bool TQProjection::hasDatumShift() const { return needsDatumShift(); }

bool TQProjection::isInvalid() const { return false; }

TQString TQProjection::wktDefinition(bool /*wkt2*/) const {
    TQString text("PROJCS[\"");
    text.append(tq_textOfName(name()));
    text.append("\",");
    text.append(WKTProjectionStuff());
    text.append(",UNIT[\"Meter\",1.0]]");
    return text;
}

int TQProjection::convertGeoPt(const TQAnglePoint& geo, TQPoint& global) const {
    return convertGeoPt(
        geo.pointWithAngleUnit(TQUnitRadian, geo.longitude().base360(), geo.latitude().base360()), global);
}

int TQProjection::convertGlobalPt(const TQPoint& global, TQAnglePoint& geo, std::uint32_t angleUnit) const {
    TQPoint point;
    int code = convertGlobalPt(global, point);
    if (!std::isfinite(point.x) || !std::isfinite(point.y)) {
        tq_perror("TQProjection::convertGlobalPt: out od scope error");
        point = TQPoint();
        code = -1;
    }
    geo = TQAnglePoint(convertDimValue(point.x, TQUnitRadian, angleUnit, false),
                       convertDimValue(point.y, TQUnitRadian, angleUnit, false), angleUnit);
    return code;
}

const char* TQProjection::whyGeoPtIsBeyondDomain(const TQPoint& geoRadians) const {
    const std::optional<TQDomain> limits = domain();
    if (!limits) {
        return nullptr;
    }
    const double longitude = tq_atNearestTurn(geoRadians.x, limits->centralMeridian);
    return TQDomainCheck(*this, *limits).whyNoImage({longitude, geoRadians.y});
}

const char* TQProjection::whyGlobalPtIsBeyondDomain(const TQPoint& global) const {
    const std::optional<TQDomain> limits = domain();
    if (!limits) {
        return nullptr;
    }
    const TQDomainCheck check(*this, *limits);
    if (const char* const reason = check.whyNoOriginal(global)) {
        return reason;
    }
    const TQMessageScope silence(TQMessageScope::Rule::Silence);
    TQPoint geo = tq_noPoint;
    return convertGlobalPt(global, geo) == 0 ? check.whyNotGeographic(geo) : "the image of no place";
}

TQPoint TQProjection::atNearestTurn(const TQPoint& geoRadians) const {
    const std::optional<TQDomain> limits = domain();
    return limits ? TQPoint{tq_atNearestTurn(geoRadians.x, limits->centralMeridian), geoRadians.y}
                  : geoRadians;
}

std::size_t TQProjection::convertGeoRuns(std::span<const TQPoint> geo, const TQUnitConversion* toRadians,
                                         std::span<TQPoint> global, std::span<signed char> statuses) const {
    const TQMessageScope once(TQMessageScope::Rule::OnceEach);
    const Runs runs = ownRuns();
    TQBatchDomain limits(*this, statuses.empty() ? std::nullopt : domain());
    return tq_convertInRuns(geo, global, statuses,
                            [&](std::span<TQPoint> points, std::span<signed char> run) {
                                if (toRadians != nullptr) {
                                    tq_convertUnits(points, *toRadians);
                                }
                                limits.beforeToPlane(points);
                                runs.toPlane(*this, points, run);
                                tq_refuseNotANumber(points, run);
                                limits.tell(run);
                            });
}

std::size_t TQProjection::convertGlobalRuns(std::span<const TQPoint> global, std::span<TQPoint> geo,
                                            const TQUnitConversion* fromRadians,
                                            std::span<signed char> statuses) const {
    const TQMessageScope once(TQMessageScope::Rule::OnceEach);
    const Runs runs = ownRuns();
    TQBatchDomain limits(*this, statuses.empty() ? std::nullopt : domain());
    return tq_convertInRuns(global, geo, statuses,
                            [&](std::span<TQPoint> points, std::span<signed char> run) {
                                limits.beforeToGeographic(points);
                                runs.toGeographic(*this, points, run);
                                tq_refuseNonFinite(points, run);
                                limits.afterToGeographic(points);
                                limits.tell(run);
                                if (fromRadians != nullptr) {
                                    tq_convertUnits(points, *fromRadians);
                                }
                            });
}

std::size_t TQProjection::convertGeoPts(std::span<const TQPoint> geo, std::span<TQPoint> global,
                                        std::span<signed char> statuses) const {
    return convertGeoRuns(geo, nullptr, global, statuses);
}

std::size_t TQProjection::convertGeoPts(std::span<const TQPoint> geo, std::uint32_t angleUnit,
                                        std::span<TQPoint> global, std::span<signed char> statuses) const {
    const TQUnitConversion toRadians(angleUnit, TQUnitRadian);
    return convertGeoRuns(geo, angleUnit == TQUnitRadian ? nullptr : &toRadians, global, statuses);
}

std::size_t TQProjection::convertGlobalPts(std::span<const TQPoint> global, std::span<TQPoint> geo,
                                           std::span<signed char> statuses) const {
    return convertGlobalRuns(global, geo, nullptr, statuses);
}

std::size_t TQProjection::convertGlobalPts(std::span<const TQPoint> global, std::span<TQPoint> geo,
                                           std::uint32_t angleUnit, std::span<signed char> statuses) const {
    const TQUnitConversion fromRadians(TQUnitRadian, angleUnit);
    return convertGlobalRuns(global, geo, angleUnit == TQUnitRadian ? nullptr : &fromRadians, statuses);
}

/// How objects of this very class convert many points.
TQProjection::Runs TQProjection::ownRuns() const {
    return _runs != nullptr && *_runs->type == typeid(*this)
               ? *_runs
               : Runs{&typeid(*this), &eachToPlane, &eachToGeographic};
}

/// Where the results of this object are right; none without limits.
std::optional<TQDomain> TQProjection::domain() const {
    const DomainOf domainOf = ownRuns().domain;
    return domainOf != nullptr ? domainOf(*this) : std::nullopt;
}

bool TQProjection::isGeoPtValid(const TQAnglePoint& geo) const {
    return isGeoPtValid(geo.pointWithAngleUnit(TQUnitRadian, false, false));
}

void TQProjection::rename(const TQString& name) { _name = std::make_unique<TQString>(name); }

bool TQProjection::isExternalProjection() const { return _name != nullptr && _name->characterAt(0) == U'\t'; }

TQRect TQProjection::computeKilographicalLimitFromGeo(const TQAnglePoint& geoMin,
                                                      const TQAnglePoint& geoMax) const {
    return TQPlaneMeasures(*this).planeExtent(geoMin, geoMax);
}

double TQProjection::parallelTangentAt(const TQAnglePoint& geo) const {
    return TQPlaneMeasures(*this).parallelTangentAt(geo);
}

double TQProjection::meridianTangentAt(const TQAnglePoint& geo) const {
    return TQPlaneMeasures(*this).meridianTangentAt(geo);
}

void TQProjection::takeName(std::unique_ptr<TQString> name) {
    _name = std::move(name);
    if (_name) {
        _name->strip(U'\r');
    }
}

std::unique_ptr<TQString> TQProjection::takePendingEllipsoidName() {
    return std::move(_pendingEllipsoidName);
}

void TQProjection::setOwnEllipsoid(std::unique_ptr<TQEllipsoid> ellipsoid) {
    setEllipsoid(ellipsoid.get());
    _ownedEllipsoid.reset(std::move(ellipsoid));
}

std::unique_ptr<TQEllipsoid> TQProjection::releaseOwnedEllipsoid() { return _ownedEllipsoid.release(); }

TQString TQProjection::wktOf(const char* projection, std::initializer_list<TQWktParameter> parameters) const {
    TQString text = TQProjection::WKTProjectionStuff();
    text.appendWithFormat(",PROJECTION[\"%s\"]", projection);
    appendWktParameters(text, parameters);
    return text;
}

void TQProjection::appendWktParameters(TQString& text, std::initializer_list<TQWktParameter> parameters) {
    for (const TQWktParameter& parameter : parameters) {
        text.appendWithFormat(",PARAMETER[\"%s\",", parameter.name);
        std::visit([&text](auto value) { appendWktValue(text, value); }, parameter.value);
        text.append("]");
    }
}

double TQProjection::eccentricity() const { return std::sqrt(_ellipsoid->eccentricitySquared()); }

bool TQProjection::isWithinPoles(double latitude) {
    return std::abs(latitude) - std::numbers::pi / 2.0 <= 1e-7;
}
