#include "grid/TQGrid.h"

#include "grid/TQGridProjNotifier.h"
#include "projection/TQDummyProjection.h"
#include "support/TQArchiveBlock.h"
#include "support/TQMessages.h"
#include "support/TQNumberText.h"
#include "support/TQPolyline.h"
#include "support/TQRawLine.h"
#include "support/TQReadStream.h"
#include "support/TQWriteStream.h"

#include <string_view>
#include <utility>

namespace {

constexpr int newestVersion = 10;

/// The versions of the archive block that brought fields.
enum Since : int {
    withLabels = 7,
    withNumberingLimit = 8,
    withDrawing = 9,
    withLock = 10,
};

// Old files and archives have coordinates in these units.
constexpr std::uint32_t oldMetricUnit = TQUnitPoint;
constexpr std::uint32_t oldAngularUnit = TQUnitRadian;

/// What a metric grid becomes that was in an angular unit; the application expects this one.
constexpr std::uint32_t unitOfMetricMode = TQUnitKilometre;

const TQString* pointerTo(const std::optional<TQString>& text) { return text ? &*text : nullptr; }

std::optional<TQString> optionalFrom(const TQString* text) {
    return text != nullptr ? std::optional(*text) : std::nullopt;
}

TQPoint converted(const TQPoint& point, const TQUnitConversion& conversion) {
    return {conversion(point.x), conversion(point.y)};
}

TQSize converted(const TQSize& size, const TQUnitConversion& conversion) {
    return {conversion(size.width), conversion(size.height)};
}

/// Each number is converted for itself; from a unit to itself none changes.
TQRect converted(const TQRect& rect, std::uint32_t from, std::uint32_t to) {
    const TQUnitConversion conversion(from, to);
    return {conversion(rect.x), conversion(rect.y), conversion(rect.width), conversion(rect.height)};
}

void convertOldAngle(TQAngleWithUnit& angle) {
    if (angle.unit() == oldAngularUnit) {
        angle.convert(TQUnitDegree);
    }
}

/// The projection that a manager has under a name. One that PROJ cannot build is none.
TQProjection* projectionIn(TQProjMgr& manager, const TQString* name, bool createIfMissing) {
    TQProjection* const projection = manager.projWithName(name, createIfMissing);
    if (projection != nullptr && projection->isInvalid()) {
        manager.disposeOfUnregistered(projection);
        return nullptr;
    }
    return projection;
}

} // namespace

TQGrid::TQGrid(const TQGrid& other)
    : TQObject(other), _fields(other._fields), _isExternal(other._isExternal), _isMarked(other._isMarked),
      _drawing(other._drawing != nullptr ? std::make_unique<TQVirtualDrawingGrid>(*other._drawing) : nullptr),
      _projection(other._projection), _projectionName(other._projectionName) {
    bindTo(other.projMgr());
    const TQProjection* const own = projection();
    if (projMgr() != nullptr && own != nullptr && own->name() != nullptr) {
        constexpr bool createIfMissing = false;
        resolveProjection(createIfMissing);
    }
}

TQGrid::TQGrid(TQReadStream* stream) { read(*stream); }

TQGrid::~TQGrid() { stopObserving(); }

std::unique_ptr<TQGrid> TQGrid::newFromStream(TQReadStream* stream) {
    auto grid = std::make_unique<TQGrid>();
    if (!grid->read(*stream)) {
        stream->fail(); // nobody knows where what follows begins
        return nullptr;
    }
    return grid;
}

// ---- Name, mode, unit

const TQString* TQGrid::name() const { return pointerTo(_fields.name); }

void TQGrid::setMode(int mode) {
    _fields.modes = referencePointMode() | (mode & modeBits);
    const bool isMetricMode = this->mode() == MetricGrid || this->mode() == OtherMetricGrid;
    if (this->mode() == AngularGrid && !_fields.isAngular()) {
        _fields.unit = TQUnitDegree;
    } else if (isMetricMode && _fields.isAngular()) {
        _fields.unit = unitOfMetricMode;
    }
}

void TQGrid::setReferencePointMode(int mode) {
    _fields.modes = (mode & referencePointModeBits) | this->mode();
}

void TQGrid::setUnit(std::uint32_t unit) {
    setRegularGridLimit(_fields.regularGridLimit, unit);
    _fields.unit = unit;
}

// ---- The metric grid

TQRect TQGrid::getRegularGridLimit(std::uint32_t unit) const {
    return _fields.isAngular() ? _fields.regularGridLimit
                               : converted(_fields.regularGridLimit, _fields.unit, unit);
}

void TQGrid::setRegularGridLimit(const TQRect& limit, std::uint32_t unit) {
    if (!_fields.isAngular()) {
        _fields.regularGridLimit = converted(limit, unit, _fields.unit);
    }
}

// ---- The angular grid

void TQGrid::reportIfMetric(const char* getter) const {
    if (!_fields.isAngular()) {
        tq_perrorf("TQGrid::%s() : illogical\n", getter);
    }
}

TQAnglePoint TQGrid::getAngularReferencePoint() const {
    reportIfMetric("getAngularReferencePoint");
    return _fields.angularReferencePoint;
}

void TQGrid::setAngularReferencePoint(const TQPoint& degrees, const TQPoint& minutes,
                                      const TQPoint& seconds) {
    _fields.angularReferencePoint = TQAnglePoint(degrees, minutes, seconds);
}

void TQGrid::setAngularReferencePoint(const TQAnglePoint& point) {
    _fields.angularReferencePoint = TQAnglePoint(point, _fields.unit);
}

void TQGrid::setAngularReferencePoint(const TQPoint& point) {
    _fields.angularReferencePoint = TQAnglePoint(point, _fields.unit);
}

TQAngleWithUnit TQGrid::getAngularReferenceMeridian() const {
    reportIfMetric("getAngularReferenceMeridian");
    return _fields.angularReferenceMeridian;
}

void TQGrid::setAngularReferenceMeridian(const TQAngleWithUnit& meridian) {
    _fields.angularReferenceMeridian = meridian;
    _fields.angularReferenceMeridian.convert(_fields.unit);
    _fields.angularReferenceMeridian.setBase360(false);
}

TQAngleSize TQGrid::getAngularSpacing() const {
    reportIfMetric("getAngularSpacing");
    return _fields.angularSpacing;
}

void TQGrid::setAngularSpacing(const TQSize& degrees, const TQSize& minutes, const TQSize& seconds) {
    _fields.angularSpacing = TQAngleSize(degrees, minutes, seconds);
}

void TQGrid::setAngularSpacing(const TQSize& spacing) {
    _fields.angularSpacing = TQAngleSize(spacing, _fields.unit);
}

// ---- Labels, drawing

void TQGrid::setIndexParameters(const TQIndexParam& parameters) {
    TQIndexParam& own = _fields.indexParameters;
    own.usesAlphanumbering = parameters.usesAlphanumbering;
    own.usesNumberingLimit = parameters.usesNumberingLimit;
    for (const auto numbering : {&TQIndexParam::horizontal, &TQIndexParam::vertical}) {
        if (own.usesAlphanumbering) {
            own.*numbering = parameters.*numbering;
        } else {
            (own.*numbering).startLabel.reset();
        }
    }
}

void TQGrid::setVirtualDrawingDefinition(std::unique_ptr<TQVirtualDrawingGrid> definition) {
    if (definition.get() == _drawing.get()) {
        static_cast<void>(definition.release()); // the grid owns it already
        return;
    }
    _drawing = std::move(definition);
}

void TQGrid::deleteVirtualDrawingDefinition() { _drawing.reset(); }

// ---- Projection and manager

const TQString* TQGrid::projectionName() const {
    const TQProjection* const living = projection();
    return living != nullptr && living->name() != nullptr ? living->name() : pointerTo(_projectionName);
}

void TQGrid::setProjection(TQProjection* projection) {
    _projection = TQWeakPointer(projection);
    _projectionName = projection != nullptr ? optionalFrom(tq_nameOf(*projection)) : std::nullopt;
}

/// Takes the name of a projection that was read, or none, and looks the projection up.
void TQGrid::takeProjectionName(std::optional<TQString> name) {
    setProjection(nullptr);
    _projectionName = std::move(name);
    constexpr bool createIfMissing = true;
    resolveProjection(createIfMissing);
}

/// Keeps the name that the projection has now for the time when it is gone.
void TQGrid::rememberProjectionName() { _projectionName = optionalFrom(projectionName()); }

/// Takes note of the name that the projection has now, or of its end: at the address of one that is gone
/// another may live soon, which is not the grid's.
void TQGrid::noteChange() {
    rememberProjectionName();
    if (projection() == nullptr) {
        _projection = {};
    }
}

/// Looks the projection up by its name in the grid's manager. The name stays when there is none, or when it
/// is a placeholder, which has none of its own.
void TQGrid::resolveProjection(bool createIfMissing) {
    rememberProjectionName();
    TQProjMgr* const manager = projMgr();
    _projection = TQWeakPointer(
        manager != nullptr ? projectionIn(*manager, pointerTo(_projectionName), createIfMissing) : nullptr);
}

void TQGrid::setProjMgr(TQProjMgr* manager) {
    const bool wasBound = _manager.isSet(); // perhaps to one that is gone and has left an observer to a copy
    if (manager == projMgr() && (manager != nullptr) == wasBound) {
        return;
    }
    const TQProjection* const before = projection();
    const bool isUnresolved = before == nullptr || before->name() == nullptr;
    bindTo(manager);
    resolveProjection(isUnresolved);
}

/// Unregisters the observer. It lives on where a copy of a manager that is gone has it, and no longer knows
/// the grid.
void TQGrid::stopObserving() {
    TQProjMgr* const manager = projMgr();
    _binding.reset();
    if (manager != nullptr) {
        manager->unregisterUser(this);
    }
}

void TQGrid::bindTo(TQProjMgr* manager) {
    stopObserving();
    _binding = std::make_unique<TQLife>();
    _manager = TQWeakPointer(manager);
    if (manager != nullptr) {
        constexpr bool replace = true; // an observer that the copy of a manager has kept
        manager->registerUser(std::make_unique<TQGridProjNotifier>(this), replace);
    }
}

/// Does without the manager, which no longer has an observer of the grid.
void TQGrid::leaveManager() {
    rememberProjectionName();
    _projection = {};
    _manager = {};
}

// ---- Archives

/// Writes what archiveFields() names.
class TQGrid::Writer {
  public:
    explicit Writer(TQWriteStream& stream) : _stream(stream) {}

    static bool has(Since /*version*/) { return true; }

    template <class T>
    void operator()(const T& value) {
        if constexpr (requires { value.archiveTo(&_stream); }) {
            value.archiveTo(&_stream);
        } else {
            _stream.write(value);
        }
    }

    void operator()(const std::optional<TQString>& text) { TQString::archive(pointerTo(text), &_stream); }

    void projection(const TQGrid& grid) {
        const TQString* const name = grid.projectionName();
        const bool isThereNone = grid.projection() == nullptr && name == nullptr;
        _stream.write(isThereNone);
        if (!isThereNone) {
            TQString::archive(name, &_stream);
        }
    }

    void drawing(const TQGrid& grid) {
        const bool isThere = grid.isExternal() && grid._drawing != nullptr;
        _stream.write(isThere);
        if (isThere) {
            grid._drawing->archiveTo(&_stream);
        }
    }

  private:
    TQWriteStream& _stream;
};

/// Reads what archiveFields() names, as far as a version has it.
class TQGrid::Reader {
  public:
    Reader(TQReadStream& stream, int version) : _stream(stream), _version(version) {}

    bool has(Since version) const { return _version >= version; }

    template <class T>
    void operator()(T& value) {
        if constexpr (requires { value.unarchiveFrom(&_stream); }) {
            value.unarchiveFrom(&_stream);
        } else {
            _stream.read(value);
        }
    }

    void operator()(std::optional<TQString>& text) {
        text = optionalFrom(TQString::unarchiveFrom(&_stream).get());
    }

    void projection(TQGrid& grid) {
        bool isThereNone = false;
        _stream.read(isThereNone);
        if (!isThereNone) {
            (*this)(grid._projectionName);
        }
    }

    void drawing(TQGrid& grid) {
        bool isThere = false;
        _stream.read(isThere);
        if (isThere) {
            grid._drawing = TQVirtualDrawingGrid::newFromStream(&_stream);
        }
    }

  private:
    TQReadStream& _stream;
    int _version;
};

/// Names what block "TQGrid" holds, in its order.
template <class Grid, class Archive>
void TQGrid::archiveFields(Grid& grid, Archive& archive) {
    auto& own = grid._fields;
    archive(own.name);
    archive(own.modes);
    archive(own.unit);
    archive(own.referencePoint);
    archive(own.angularReferencePoint);
    archive(own.angularReferenceMeridian);
    archive(own.spacing);
    archive(own.borderDist);
    archive(own.angularSpacing);
    archive(own.regularGridLimit);
    archive.projection(grid);
    if (archive.has(withLabels)) {
        auto& labels = own.indexParameters;
        archive(own.keepsBorderLines);
        archive(labels.usesAlphanumbering);
        if (archive.has(withNumberingLimit)) {
            archive(labels.usesNumberingLimit);
        }
        if (labels.usesAlphanumbering) {
            for (auto* const numbering : {&labels.horizontal, &labels.vertical}) {
                archive(numbering->isNumeric);
                archive(numbering->extra);
                archive(numbering->startLabel);
            }
        }
    }
    if (archive.has(withDrawing)) {
        archive.drawing(grid);
    }
    if (archive.has(withLock)) {
        archive(own.lockedOnGeoRefProjection);
    }
}

void TQGrid::archiveTo(TQWriteStream* stream) const {
    stream->declareVersion(ownName, newestVersion);
    Writer writer(*stream);
    archiveFields(*this, writer);
}

void TQGrid::unarchiveFrom(TQReadStream* stream) { read(*stream); }

/// Reads a block; false, and nothing changed, when there is none that is known and whole.
bool TQGrid::read(TQReadStream& stream) {
    const int version = tq_readKnownVersion(&stream, ownName, newestVersion);
    TQGrid grid;
    if (version >= 0) {
        Reader reader(stream, version);
        archiveFields(grid, reader);
    }
    if (version < 0 || stream.failed()) {
        return false;
    }
    grid._fields.takeModes(grid._fields.modes);
    if (version < newestVersion) {
        grid._fields.modernizeUnits();
    }
    _fields = std::move(grid._fields);
    _drawing = std::move(grid._drawing);
    takeProjectionName(std::move(grid._projectionName));
    return true;
}

/// Takes the modes from a number, of which other bits do not count.
void TQGrid::Fields::takeModes(std::int32_t number) { modes = number & (modeBits | referencePointModeBits); }

/// Converts the coordinates that are in the grid's unit, the limit of a regular grid apart.
void TQGrid::Fields::convertPlane(std::uint32_t from, std::uint32_t to) {
    const TQUnitConversion conversion(from, to);
    referencePoint = converted(referencePoint, conversion);
    spacing = converted(spacing, conversion);
    borderDist = converted(borderDist, conversion);
}

/// Turns the units of old archives into those of today. The limit of an angular grid has no unit.
void TQGrid::Fields::modernizeUnits() {
    if (unit == oldMetricUnit) {
        unit = TQUnitCentimetre;
        convertPlane(oldMetricUnit, unit);
        regularGridLimit = converted(regularGridLimit, oldMetricUnit, unit);
    } else if (unit == oldAngularUnit) {
        unit = TQUnitDegree;
        convertPlane(oldAngularUnit, unit);
    }
    for (TQAngleWithUnit* const angle :
         {&angularReferencePoint.longitude(), &angularReferencePoint.latitude(), &angularReferenceMeridian,
          &angularSpacing.width(), &angularSpacing.height()}) {
        convertOldAngle(*angle);
    }
}

// ---- Text files

/// Reads the lines of a text file into a grid. Every operation answers whether what it reads was there.
class TQGrid::TextReader {
  public:
    TextReader(TQGrid& grid, std::FILE* file) : _grid(grid), _fields(grid._fields), _file(file) {}

    bool read() {
        std::int32_t version = 0;
        const bool isKnown = readNumbers(version) && (version == 1 || version == 2);
        if (!isKnown) {
            tq_perrorf("TQGrid::readFromFile() : unknown version: %d\n", version);
        }
        return isKnown && readName() && _frame.readFromFile(_file) == 0 &&
               (version == 1 ? readOlder() : readNewer());
    }

  private:
    std::optional<TQString> line() {
        constexpr std::size_t longestLine = 1024;
        const std::optional<TQRawLine> raw = tq_nextRawLine(_file, longestLine);
        return raw ? std::optional(TQString(raw->bytes.c_str())) : std::nullopt;
    }

    static bool take(std::string_view& text, std::int32_t& number) { return tq_takeLong(text, number); }
    static bool take(std::string_view& text, double& number) { return tq_takeDouble(text, number); }

    /// Reads a line of numbers, all of which must be there.
    template <class... Numbers>
    bool readNumbers(Numbers&... numbers) {
        const std::optional<TQString> text = line();
        std::string_view rest = text ? text->charBuffer() : "";
        return (take(rest, numbers) && ...);
    }

    bool readName() {
        const std::optional<TQString> name = line();
        if (name) {
            _grid.setName(*name);
            _grid.setIsMarked(false);
        }
        return name.has_value();
    }

    /// Reads the name of the projection, if there is one.
    bool readProjection(bool isThereNone) {
        std::optional<TQString> name = isThereNone ? std::nullopt : line();
        if (!isThereNone && !name) {
            return false;
        }
        _grid.takeProjectionName(std::move(name));
        return true;
    }

    /// Takes the limit of a regular grid, whose corners stand in typographic points in either version; that
    /// of a new grid from fewer than three points.
    void takeLimit() {
        if (_frame.count() < 3) {
            _fields.regularGridLimit = Fields().regularGridLimit;
            return;
        }
        const TQRect limit(_frame.pointAt(0), _frame.pointAt(2));
        _fields.regularGridLimit =
            _fields.isAngular() ? limit : converted(limit, oldMetricUnit, _fields.unit);
    }

    bool readOlder() {
        std::int32_t modes = 0;
        std::int32_t isThereNoProjection = 0;
        TQPoint point;
        TQPoint pointOfMetricGrid;
        TQSize spacing;
        if (!readNumbers(modes, point.x, point.y, pointOfMetricGrid.x, pointOfMetricGrid.y, spacing.width,
                         spacing.height, isThereNoProjection) ||
            !readProjection(isThereNoProjection != 0)) {
            return false;
        }
        _fields.takeModes(modes);
        _fields.referencePoint = _grid.mode() == MetricGrid ? pointOfMetricGrid : point;
        _fields.spacing = spacing;
        _fields.borderDist = {spacing.width / 2.0, spacing.height / 2.0};
        _fields.keepsBorderLines = 0;
        takeUnitOfMode();
        takeLimit();
        _grid.setIndexParameters({true,
                                  false,
                                  {.isNumeric = false, .extra = 0, .startLabel = TQString("A")},
                                  {.isNumeric = true, .extra = 0, .startLabel = TQString("1")}});
        return true;
    }

    /// Gives the grid the unit that belongs to its mode, and converts coordinates that are in another one.
    void takeUnitOfMode() {
        switch (_grid.mode()) {
        case MetricGrid:
            _fields.unit = TQUnitMetre;
            break;
        case AngularGrid:
            _fields.unit = TQUnitDegree;
            _fields.convertPlane(oldAngularUnit, TQUnitDegree);
            _fields.angularReferencePoint = TQAnglePoint(_fields.referencePoint, TQUnitDegree);
            _fields.angularSpacing = TQAngleSize(_fields.spacing, TQUnitDegree);
            break;
        case OtherMetricGrid:
            _fields.unit = TQUnitCentimetre;
            _fields.convertPlane(oldMetricUnit, TQUnitCentimetre);
            break;
        default:
            break;
        }
    }

    bool readNewer() {
        std::int32_t modes = 0;
        std::int32_t unit = 0;
        TQPoint point;
        TQPoint angularPoint;
        TQSize spacing;
        TQSize angularSpacing;
        TQSize borderDist;
        TQSize reserved;
        std::int32_t keepsBorderLines = 0;
        std::int32_t isThereNoProjection = 0;
        std::int32_t usesAlphanumbering = 0;
        TQIndexParam labels;
        if (!readNumbers(modes, unit, point.x, point.y, angularPoint.x, angularPoint.y, spacing.width,
                         spacing.height, angularSpacing.width, angularSpacing.height, borderDist.width,
                         borderDist.height, reserved.width, reserved.height, keepsBorderLines,
                         usesAlphanumbering, isThereNoProjection) ||
            !readProjection(isThereNoProjection != 0) || !readLabels(labels)) {
            return false;
        }
        _fields.takeModes(modes);
        _fields.unit = unit != 0 ? static_cast<std::uint32_t>(unit) : TQUnitDegreeMinuteSecond;
        _fields.referencePoint = point;
        _fields.spacing = spacing;
        const std::uint32_t angularUnit = _fields.isAngular() ? _fields.unit : TQUnitDegree;
        _fields.angularReferencePoint = TQAnglePoint(angularPoint, angularUnit);
        _fields.angularSpacing = TQAngleSize(angularSpacing, angularUnit);
        _fields.borderDist = borderDist;
        _fields.keepsBorderLines = static_cast<char>(keepsBorderLines);
        takeLimit();
        labels.usesAlphanumbering = usesAlphanumbering != 0;
        _grid.setIndexParameters(labels);
        return true;
    }

    bool readLabels(TQIndexParam& labels) {
        std::int32_t horizontalIsNumeric = 0;
        std::int32_t horizontalExtra = 0;
        std::int32_t verticalIsNumeric = 0;
        std::int32_t verticalExtra = 0;
        if (!readNumbers(horizontalIsNumeric, horizontalExtra, verticalIsNumeric, verticalExtra)) {
            return false;
        }
        labels.horizontal = {horizontalIsNumeric != 0, static_cast<char>(horizontalExtra), line()};
        labels.vertical = {verticalIsNumeric != 0, static_cast<char>(verticalExtra), line()};
        return labels.vertical.startLabel.has_value();
    }

    TQGrid& _grid;
    Fields& _fields;
    std::FILE* _file;
    TQPolyline _frame; // the rectangle of the limit
};

int TQGrid::readFromFile(std::FILE* file) {
    _fields.angularReferenceMeridian = Fields().angularReferenceMeridian;
    return file != nullptr && TextReader(*this, file).read() ? 0 : 1;
}
