#include "proj/TQPrProj4.h"

#include "proj/TQProjCalls.h"
#include "support/TQArchiveBlock.h"
#include "support/TQErrorSpool.h"
#include "support/TQFile.h"
#include "support/TQLocalizer.h"
#include "support/TQMessages.h"
#include "support/TQReadStream.h"
#include "support/TQTextBlock.h"
#include "support/TQUnit.h"
#include "support/TQWriteStream.h"

#include <algorithm>
#include <limits>
#include <proj_experimental.h>
#include <string_view>
#include <typeinfo>

namespace {

constexpr int failed = -1;
constexpr int notAReferenceSystem = -1;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double northPole = 1.5707963267948966;

constexpr TQTextBlock textBlock{.className = TQPrProj4::ownName,
                                .oldestVersion = 0,
                                .newestVersion = 0,
                                .openFailed = failed,
                                .headerUnreadable = failed,
                                .versionUnknown = failed,
                                .writeFailed = failed};

/// What PROJ is given of a definition: a PROJ string is said to be a reference system, an old-style EPSG
/// reference becomes the authority's code.
TQString projInput(const TQString& definition) {
    constexpr std::string_view projString = "+proj=";
    constexpr std::string_view oldReference = "+init=epsg:";
    const std::string text = definition.utf8();
    const std::size_t reference = text.find(oldReference);
    if (reference != std::string::npos) {
        const std::size_t code = reference + oldReference.size();
        const std::size_t end = text.find(' ', reference);
        return TQString(("EPSG:" + text.substr(code, end == std::string::npos ? end : end - code)).c_str());
    }
    return text.find(projString) != std::string::npos ? TQString((text + " +type=crs").c_str()) : definition;
}

bool fitsOnLine(const TQString& text) { return text.length() <= TQFile::defaultMaximumLength; }

} // namespace

TQPrProj4::TQPrProj4() { setRuns(runs()); }

TQPrProj4::TQPrProj4(const TQPrProj4& other)
    : TQProjection(other), _definition(other._definition), _usesWGS84Source(other._usesWGS84Source),
      _isConfined(other._isConfined), _refusesBallpark(other._refusesBallpark) {
    setRuns(runs());
    if (!other._projInitialized || !other._projCRS) {
        return; // what is there after a reading is of the definition before
    }
    _projContext = newContext();
    _projCRS.reset(proj_clone(_projContext.get(), other._projCRS.get()));
    if (_projCRS && other._projTransform) {
        _projTransform.reset(proj_clone(_projContext.get(), other._projTransform.get()));
    }
    _projInitialized = _projCRS != nullptr;
}

TQPrProj4::~TQPrProj4() { release(); }

TQProjContextHandle TQPrProj4::newContext() const {
    return tq_newProjContext(_isConfined ? TQProjTrust::None : TQProjTrust::Full, _projLog);
}

// Transformation and reference system before their context.
void TQPrProj4::release() const {
    _projTransform.reset();
    _projCRS.reset();
    _projContext.reset();
}

int TQPrProj4::initFromPROJString(const char* definition, bool useWGS84Source) {
    _definition = TQString(definition);
    _isConfined = false;
    return initPROJ(useWGS84Source);
}

int TQPrProj4::initFromForeignText(const char* definition, bool useWGS84Source) {
    _definition = TQString(definition);
    _isConfined = true;
    return initPROJ(useWGS84Source);
}

int TQPrProj4::initPROJ(bool useWGS84Source) { return build(useWGS84Source); }

void TQPrProj4::report(const char* operation, int error) const {
    _projError = error;
    tq_perrorf("TQPrProj4::%s: PROJ error :%s\n", operation, tq_projErrorText(_projContext.get(), error));
}

int TQPrProj4::build(bool useWGS84Source) const {
    release();
    _projContext = newContext();
    _projCRS = tq_newProjObject(_projContext.get(), projInput(_definition));
    _projInitialized = true;
    if (_projCRS && proj_is_crs(_projCRS.get()) != 0) {
        buildTransformation(useWGS84Source);
        return 0;
    }
    if (_projCRS) {
        _projError = notAReferenceSystem;
        tq_perrorf("TQPrProj4::initPROJ: PROJ is not CRS (type %d)\n",
                   static_cast<int>(proj_get_type(_projCRS.get())));
    } else {
        report("initPROJ", proj_context_errno(_projContext.get()));
    }
    release();
    return failed;
}

TQProjHandle TQPrProj4::newSource(bool useWGS84Source) const {
    TQProjHandle source =
        useWGS84Source ? TQProjHandle(proj_create(_projContext.get(), "EPSG:4326")) : geodeticSystem();
    if (!source) {
        report("resetPROJTransform", proj_errno_reset(_projCRS.get()));
    } else if (proj_is_crs(source.get()) == 0) {
        _projError = notAReferenceSystem;
        tq_perrorf("TQPrProj4::resetPROJTransform: PROJ is not CRS (type %d)\n",
                   static_cast<int>(proj_get_type(source.get())));
        source.reset();
    }
    return source;
}

void TQPrProj4::buildTransformation(bool useWGS84Source) const {
    const TQProjHandle source = newSource(useWGS84Source);
    if (!source) {
        return;
    }
    _usesWGS84Source = useWGS84Source;
    _projTransform = tq_newProjTransformation(_projContext.get(), source.get(), _projCRS.get());
    if (!_projTransform) {
        report("resetPROJTransform", proj_errno_reset(_projCRS.get()));
    }
}

TQString TQPrProj4::proj4Definition() const {
    if (!_projCRS) {
        return TQString();
    }
    const TQProjHandle bound(proj_crs_create_bound_crs_to_WGS84(_projContext.get(), _projCRS.get(), nullptr));
    const PJ* described = bound ? bound.get() : _projCRS.get();
    return tq_projText(proj_as_proj_string(_projContext.get(), described, PJ_PROJ_5, nullptr));
}

TQString TQPrProj4::wktDefinition(bool wkt2) const {
    if (!_projCRS) {
        return TQString();
    }
    const PJ_WKT_TYPE type = wkt2 ? PJ_WKT2_2019 : PJ_WKT1_GDAL;
    const char* text = proj_as_wkt(_projContext.get(), _projCRS.get(), type, nullptr);
    if (text == nullptr) {
        tq_perrorf("TQPrProj4::wktDefinition(bool): unable to extract WKT (type=%d)\n",
                   static_cast<int>(type));
    }
    return tq_projText(text);
}

int TQPrProj4::PROJCRSType() const {
    const PJ_TYPE type = _projCRS ? proj_get_type(_projCRS.get()) : PJ_TYPE_UNKNOWN;
    return type == PJ_TYPE_GEOGRAPHIC_2D_CRS || type == PJ_TYPE_PROJECTED_CRS ? static_cast<int>(type) : 0;
}

TQPrProj4::Coordinates TQPrProj4::coordinates() const {
    const auto lock = lockBuilt();
    const TQProjHandle system = horizontalSystem();
    switch (system ? proj_get_type(system.get()) : PJ_TYPE_UNKNOWN) {
    case PJ_TYPE_GEOGRAPHIC_2D_CRS:
    case PJ_TYPE_GEOGRAPHIC_3D_CRS:
        return Coordinates::Geographic;
    case PJ_TYPE_GEOCENTRIC_CRS:
        return Coordinates::Geocentric;
    default:
        return Coordinates::Plane;
    }
}

TQString TQPrProj4::systemName() const {
    const auto lock = lockBuilt();
    return tq_projText(_projCRS ? proj_get_name(_projCRS.get()) : nullptr);
}

TQProjHandle TQPrProj4::horizontalSystem() const {
    return tq_horizontalSystem(_projContext.get(), _projCRS.get());
}

TQProjHandle TQPrProj4::geodeticSystem() const {
    return TQProjHandle(_projCRS ? proj_crs_get_geodetic_crs(_projContext.get(), _projCRS.get()) : nullptr);
}

double TQPrProj4::angularUnitInDegrees() const {
    const auto lock = lockBuilt();
    return _usesWGS84Source ? 1.0 : tq_angularUnitInDegrees(_projContext.get(), geodeticSystem().get());
}

double TQPrProj4::coordinateUnitInDegrees() const {
    const auto lock = lockBuilt();
    return tq_angularUnitInDegrees(_projContext.get(), horizontalSystem().get());
}

double TQPrProj4::primeMeridian() const {
    const auto lock = lockBuilt();
    return _usesWGS84Source ? 0.0 : tq_primeMeridian(_projContext.get(), geodeticSystem().get());
}

TQString TQPrProj4::geodeticName() const {
    const auto lock = lockBuilt();
    return tq_geodeticName(_projContext.get(), geodeticSystem().get());
}

bool TQPrProj4::isBallpark() const {
    const auto lock = lockBuilt();
    return tq_isBallpark(_projContext.get(), _projTransform.get());
}

double TQPrProj4::lengthUnitInMetres() const {
    const auto lock = lockBuilt();
    return tq_lengthUnitInMetres(_projContext.get(), horizontalSystem().get());
}

double TQPrProj4::eccentricitySquared() const {
    const auto lock = lockBuilt();
    return tq_eccentricitySquared(_projContext.get(), geodeticSystem().get());
}

bool TQPrProj4::areaOfUse(TQPoint& southWest, TQPoint& northEast) const {
    const auto lock = lockBuilt();
    return tq_areaOfUse(_projContext.get(), _projCRS.get(), southWest, northEast) ||
           tq_areaOfUse(_projContext.get(), horizontalSystem().get(), southWest, northEast);
}

int TQPrProj4::geodeticCode() const {
    const auto lock = lockBuilt();
    const TQProjHandle geodetic = geodeticSystem();
    constexpr int firstIdentifier = 0;
    return geodetic ? tq_projText(proj_get_id_code(geodetic.get(), firstIdentifier)).convertToLong() : 0;
}

TQString TQPrProj4::PROJErrorMessage() const { return tq_projErrorText(_projContext.get(), _projError); }

// The base block would hold an ellipsoid, which the definition has itself.
void TQPrProj4::archiveTo(TQWriteStream* stream) const {
    stream->declareVersion(ownName, 0);
    TQString::archive(name(), stream);
    TQString::archive(&_definition, stream);
}

void TQPrProj4::unarchiveFrom(TQReadStream* stream) {
    _projInitialized = false;
    if (tq_readKnownVersion(stream, ownName, 0) < 0) {
        return;
    }
    takeName(TQString::unarchiveFrom(stream));
    const auto definition = TQString::unarchiveFrom(stream);
    _definition = definition ? *definition : TQString();
    _isConfined = true;
}

TQString TQPrProj4::WKTProjectionStuff() const { return TQString("invalid"); }

TQString TQPrProj4::typeName() const { return TQString("Proj4 Library"); }

void TQPrProj4::getParams(HashTbl<TQProjParam>& table) const {
    TQProjection::getParams(table);
    const TQString definition("definition");
    table.add(std::make_unique<TQProjParam>(definition, _definition, TQString()), definition);
}

void TQPrProj4::setParams(const HashTbl<TQProjParam>& table) {
    TQProjection::setParams(table);
    const TQProjParam* given = table.lookup("definition");
    if (given != nullptr && given->stringValue() != nullptr) {
        _isConfined = _isConfined && _definition == *given->stringValue(); // an editor gives back what it got
        _definition = *given->stringValue();
        constexpr bool useWGS84Source = true;
        initPROJ(useWGS84Source);
    }
}

bool TQPrProj4::hasSameDefinition(const TQProjection& other) const {
    const auto* that = dynamic_cast<const TQPrProj4*>(&other);
    return TQProjection::hasSameDefinition(other) && that != nullptr && _definition == that->_definition;
}

int TQPrProj4::loadFromFile(TQFile& file, bool withHeader) {
    _projInitialized = false;
    int version = 0;
    if (const int code = textBlock.beginReading(file, withHeader, version)) {
        return code;
    }
    TQString line;
    if (file.readLine(line) != 0) {
        return file.failReading(failed, "the line of the name is missing");
    }
    rename(line);
    _isConfined = true;
    return file.readLine(_definition) == 0
               ? 0
               : file.failReading(failed, "the line of the definition is missing");
}

int TQPrProj4::writeToFile(TQFile& file, bool withHeader) const {
    if (const int code = textBlock.beginWriting(file, withHeader)) {
        return code;
    }
    TQString nameLine = tq_textOfName(name());
    nameLine.strip(U'\r'); // the mark of a deprecated system, which would end the line
    const bool isWritten = fitsOnLine(nameLine) && fitsOnLine(_definition) && file.writeLine(nameLine) == 0 &&
                           file.writeLine(_definition) == 0;
    return isWritten ? 0 : failed;
}

int TQPrProj4::transform(int direction, const char* operation, TQPoint& point) const {
    if (!_projTransform) {
        point = {infinity, infinity};
        return failed;
    }
    _projLog.clear();
    _projError = tq_projTransform(_projTransform.get(), static_cast<PJ_DIRECTION>(direction), point);
    if (_projError != 0) {
        report(operation, _projError);
    } else if (_refusesBallpark && tq_wasBallpark(_projContext.get(), _projTransform.get())) {
        tq_perrorf("TQPrProj4::%s: PROJ error :%s\n", operation, tq_noTransformationHere);
    } else {
        return 0;
    }
    point = {infinity, infinity};
    return failed;
}

/// Builds what is not built yet; false, and the user told, when there is no reference system then.
bool TQPrProj4::prepare() const {
    if (_projInitialized || build(_usesWGS84Source) == 0) {
        return true;
    }
    TQString message = TQLocalizer::appLocalizedStringForKey(TQString("Invalid projection:"));
    message.append(" ");
    message.append(tq_textOfName(name()));
    constexpr int level = 4;
    TQErrorSpool::sharedAddMessage(message, TQString("conversion"), level);
    return false;
}

/// The lock, with everything built that there is a definition of.
std::unique_lock<std::mutex> TQPrProj4::lockBuilt() const {
    std::unique_lock lock(_mutex);
    if (!_definition.isEmpty()) {
        prepare();
    }
    return lock;
}

bool TQPrProj4::ensureBuilt() const {
    const auto lock = lockBuilt();
    return !isInvalid();
}

int TQPrProj4::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    const std::lock_guard lock(_mutex);
    if (!prepare()) {
        return failed;
    }
    global = {tq_rad2deg(geo.x), tq_rad2deg(geo.y)};
    return transform(PJ_FWD, "convertGeoPt", global);
}

int TQPrProj4::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    const std::lock_guard lock(_mutex);
    if (!prepare()) {
        return failed;
    }
    TQPoint degrees = global;
    const int code = transform(PJ_INV, "convertGlobalPt", degrees);
    geo = {tq_deg2rad(degrees.x), tq_deg2rad(degrees.y)};
    return code;
}

/// Points take the lock once, and PROJ gets them together.
const TQProjection::Runs& TQPrProj4::runs() {
    static constexpr Run toPlane = [](const TQProjection& projection, std::span<TQPoint> points,
                                      std::span<signed char> statuses) {
        for (TQPoint& point : points) {
            point = {tq_rad2deg(point.x), tq_rad2deg(point.y)};
        }
        static_cast<const TQPrProj4&>(projection).transformRun(PJ_FWD, "convertGeoPt", points, statuses);
    };
    static constexpr Run toGeographic = [](const TQProjection& projection, std::span<TQPoint> points,
                                           std::span<signed char> statuses) {
        static_cast<const TQPrProj4&>(projection).transformRun(PJ_INV, "convertGlobalPt", points, statuses);
        for (TQPoint& point : points) {
            point = {tq_deg2rad(point.x), tq_deg2rad(point.y)};
        }
    };
    static const Runs runs{&typeid(TQPrProj4), toPlane, toGeographic};
    return runs;
}

/// Converts points in PROJ's units; the first failure is reported.
void TQPrProj4::transformRun(int direction, const char* operation, std::span<TQPoint> points,
                             std::span<signed char> statuses) const {
    const std::lock_guard lock(_mutex);
    if (!prepare() || !_projTransform) {
        std::ranges::fill(statuses, static_cast<signed char>(failed));
        return;
    }
    if (_refusesBallpark) { // PROJ tells the operation of the last point alone
        for (std::size_t index = 0; index < points.size(); ++index) {
            statuses[index] = static_cast<signed char>(transform(direction, operation, points[index]));
        }
        return;
    }
    _projLog.clear();
    _projError =
        tq_projTransform(_projTransform.get(), static_cast<PJ_DIRECTION>(direction), points, statuses);
    if (_projError != 0) {
        report(operation, _projError);
    }
}

// A status of 0 says that PROJ met no error; its number may be that of another thread's point by now.
bool TQPrProj4::polePosition(double latitude, TQPoint& position) const {
    return convertGlobalPt(TQPoint{0.0, latitude}, position) == 0 && position.x != infinity &&
           position.y != infinity;
}

bool TQPrProj4::northPolePosition(TQPoint& position) const { return polePosition(northPole, position); }

bool TQPrProj4::southPolePosition(TQPoint& position) const { return polePosition(-northPole, position); }

TQPoint TQPrProj4::center() const {
    tq_perror("TQPrProj4::center(): no valid method.\n");
    return TQPoint();
}

void TQPrProj4::setEllipsoid(TQEllipsoid* /*ellipsoid*/) {}

bool TQPrProj4::needsDatumShift() const {
    const TQProjHandle geodetic = geodeticSystem();
    return geodetic != nullptr && !(tq_projText(proj_get_name(geodetic.get())) == "WGS 84");
}

bool TQPrProj4::isInvalid() const { return !_projCRS || !_projTransform; }
