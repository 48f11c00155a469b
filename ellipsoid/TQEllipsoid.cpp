#include "ellipsoid/TQEllipsoid.h"

#include "support/TQArchiveBlock.h"
#include "support/TQFile.h"
#include "support/TQMessages.h"
#include "support/TQNumberText.h"
#include "support/TQReadStream.h"
#include "support/TQTextBlock.h"
#include "support/TQWriteStream.h"

#include <algorithm>
#include <cmath>
#include <vector>

using tq::formulas::DatumShift;
using tq::formulas::Geographic;

namespace {

constexpr double semiMajorAxisTolerance = 1.0;
constexpr double eccentricitySquaredTolerance = 1e-7;
constexpr const char* numberFormat = "%.13g";
constexpr int nameMissing = 5004;
constexpr int semiMajorAxisMissing = 5005;
constexpr int eccentricitySquaredMissing = 5006;
constexpr int missingLaterLine = 5008;
constexpr const char* shiftLineMissing = "a line of the datum shift is missing";

constexpr TQTextBlock textBlock{.className = "TQEllipsoid",
                                .oldestVersion = 1,
                                .newestVersion = 2,
                                .openFailed = 5001,
                                .headerUnreadable = 5002,
                                .versionUnknown = 5003,
                                .writeFailed = 5007};

double flattening(double eccentricitySquared) { return 1.0 - std::sqrt(1.0 - eccentricitySquared); }

bool differs(double one, double other, double tolerance) { return std::abs(one - other) > tolerance; }

} // namespace

/// One stored number of a datum shift and the largest difference at which two count as the same.
struct TQEllipsoid::ShiftField {
    double DatumShift::*value;
    double tolerance;
};

// In the order of files and archives; a three-parameter shift has the first five.
std::span<const TQEllipsoid::ShiftField> TQEllipsoid::shiftFields(std::uint32_t kind) {
    static constexpr ShiftField fields[] = {
        {&DatumShift::refSemiMajorAxis, 1.0},
        {&DatumShift::refFlattening, 1e-8},
        {&DatumShift::dx, 1.0},
        {&DatumShift::dy, 1.0},
        {&DatumShift::dz, 1.0},
        {&DatumShift::rx, 1e-12},
        {&DatumShift::ry, 1e-12},
        {&DatumShift::rz, 1e-12},
        {&DatumShift::scalePpm, 1e-6},
    };
    const std::span<const ShiftField> all(fields);
    switch (kind) {
    case ThreeParameterShift:
        return all.first(5);
    case SevenParameterShift:
        return all;
    default:
        return {};
    }
}

TQEllipsoid::TQEllipsoid(const TQString& name, double semiMajorAxis, double eccentricitySquared)
    : _name(std::make_unique<TQString>(name)), _semiMajorAxis(semiMajorAxis),
      _eccentricitySquared(eccentricitySquared) {}

TQEllipsoid::TQEllipsoid(TQReadStream* stream) {
    const int version = stream->version("TQEllipsoid");
    if (version == 0 || (version >= 2 && version <= 4)) {
        unarchiveVersion(stream, version);
    } else {
        tq_perrorf("TQEllipsoid::TQEllipsoid(TQReadStream *stream): version %d is unknown.\n", version);
        stream->noteUnknownBlock();
    }
}

TQEllipsoid::TQEllipsoid(const TQEllipsoid& other)
    : TQObject(other), _shift(other._shift),
      _name(other._name ? std::make_unique<TQString>(*other._name) : nullptr),
      _semiMajorAxis(other._semiMajorAxis), _eccentricitySquared(other._eccentricitySquared) {}

TQEllipsoid::~TQEllipsoid() = default;

bool TQEllipsoid::isEqual(const TQObject* other) const {
    const auto* that = dynamic_cast<const TQEllipsoid*>(other);
    if (that == nullptr || !tq_namesAreEqual(name(), that->name()) ||
        differs(_semiMajorAxis, that->_semiMajorAxis, semiMajorAxisTolerance) ||
        differs(_eccentricitySquared, that->_eccentricitySquared, eccentricitySquaredTolerance) ||
        _shift.kind != that->_shift.kind) {
        return false;
    }
    for (const ShiftField& field : shiftFields(_shift.kind)) {
        if (differs(_shift.*field.value, that->_shift.*field.value, field.tolerance)) {
            return false;
        }
    }
    return true;
}

bool TQEllipsoid::isIdentical(const TQEllipsoid& other) const {
    const auto fields = shiftFields(_shift.kind);
    return tq_namesAreEqual(name(), other.name()) && _semiMajorAxis == other._semiMajorAxis &&
           _eccentricitySquared == other._eccentricitySquared && _shift.kind == other._shift.kind &&
           std::ranges::all_of(fields, [this, &other](const ShiftField& field) {
               return _shift.*field.value == other._shift.*field.value;
           });
}

void TQEllipsoid::archiveTo(TQWriteStream* stream) const {
    stream->declareVersion("TQEllipsoid", 4);
    TQString::archive(name(), stream);
    stream->write(_semiMajorAxis);
    stream->write(_eccentricitySquared);
    stream->write(static_cast<char>(_shift.kind));
    for (const ShiftField& field : shiftFields(_shift.kind)) {
        stream->write(_shift.*field.value);
    }
}

void TQEllipsoid::unarchiveVersion(TQReadStream* stream, int version) {
    if (version == 4) {
        _name = TQString::unarchiveFrom(stream);
    } else {
        _name = std::make_unique<TQString>(tq_readCountedString(stream));
    }
    if (_name) {
        _name->strip(U'\r');
    }
    stream->read(_semiMajorAxis);
    stream->read(_eccentricitySquared);
    if (version == 0) {
        return;
    }
    char kind = 0;
    stream->read(kind);
    if (version == 2 && kind != 0) {
        kind = ThreeParameterShift;
    }
    _shift.kind = static_cast<unsigned char>(kind);
    for (const ShiftField& field : shiftFields(_shift.kind)) {
        stream->read(_shift.*field.value);
    }
    deriveShift();
}

int TQEllipsoid::loadFromFile(TQFile& file) {
    constexpr bool withHeader = true;
    int version = 0;
    if (const int code = textBlock.beginReading(file, withHeader, version)) {
        return code;
    }
    const int code = loadLines(file, version);
    deriveShift();
    return code;
}

int TQEllipsoid::loadLines(TQFile& file, int version) {
    TQString line;
    if (file.readLine(line) != 0) {
        return file.failReading(nameMissing, "the line of the name is missing");
    }
    _name = std::make_unique<TQString>(line);
    if (file.readNumberLine(line) != 0) {
        return file.failReading(semiMajorAxisMissing, "the line of the semi-major axis is missing");
    }
    _semiMajorAxis = line.convertToDouble();
    if (file.readNumberLine(line) != 0) {
        return file.failReading(eccentricitySquaredMissing,
                                "the line of the squared eccentricity is missing");
    }
    _eccentricitySquared = line.convertToDouble();
    _shift.kind = NoDatumShift;
    if (version >= 2) {
        if (file.readNumberLine(line) != 0) {
            return file.failReading(missingLaterLine, shiftLineMissing);
        }
        _shift.kind = static_cast<std::uint32_t>(line.convertToLong());
    }
    return loadShiftLines(file);
}

// The reference axis and flattening stand on a line each, the other parameters on one line together.
int TQEllipsoid::loadShiftLines(TQFile& file) {
    const auto fields = shiftFields(_shift.kind);
    if (fields.empty()) {
        return 0;
    }
    TQString line;
    for (const ShiftField& field : fields.first(2)) {
        if (file.readNumberLine(line) != 0) {
            return file.failReading(missingLaterLine, shiftLineMissing);
        }
        _shift.*field.value = line.convertToDouble();
    }
    std::vector<double*> targets;
    for (const ShiftField& field : fields.subspan(2)) {
        targets.push_back(&(_shift.*field.value));
    }
    if (file.readNumberLine(line, {static_cast<int>(targets.size())}) != 0) {
        return file.failReading(missingLaterLine, shiftLineMissing);
    }
    tq_scanDoubles(line.utf8(), targets);
    return 0;
}

int TQEllipsoid::writeToFile(TQFile& file) const {
    constexpr bool withHeader = true;
    if (const int code = textBlock.beginWriting(file, withHeader)) {
        return code;
    }
    if (file.writeLine(tq_textOfName(name())) != 0 ||
        file.writeLine(file.numberText(_semiMajorAxis, numberFormat).c_str()) != 0 ||
        file.writeLine(file.numberText(_eccentricitySquared, numberFormat).c_str()) != 0) {
        return textBlock.writeFailed;
    }
    return writeShiftLines(file);
}

int TQEllipsoid::writeShiftLines(TQFile& file) const {
    if (file.writeLine(tq_format("%u", _shift.kind).c_str()) != 0) {
        return missingLaterLine;
    }
    const auto fields = shiftFields(_shift.kind);
    if (fields.empty()) {
        return 0;
    }
    std::string parameters;
    for (const ShiftField& field : fields.subspan(2)) {
        parameters += (parameters.empty() ? "" : " ") + file.numberText(_shift.*field.value, numberFormat);
    }
    const bool failed = file.writeLine(file.numberText(_shift.refSemiMajorAxis, numberFormat).c_str()) != 0 ||
                        file.writeLine(file.numberText(_shift.refFlattening, numberFormat).c_str()) != 0 ||
                        file.writeLine(parameters.c_str()) != 0;
    return failed ? missingLaterLine : 0;
}

// Puts the fields that the kind does not have to 0 and computes those that are never stored.
void TQEllipsoid::deriveShift() {
    const auto present = shiftFields(_shift.kind);
    if (present.empty()) {
        _shift.kind = NoDatumShift;
    }
    for (const ShiftField& field : shiftFields(SevenParameterShift).subspan(present.size())) {
        _shift.*field.value = 0.0;
    }
    _shift.refEccentricitySquared = (2.0 - _shift.refFlattening) * _shift.refFlattening;
    _shift.molodenskyForward = 0.0;
    _shift.molodenskyReverse = 0.0;
    if (_shift.kind == ThreeParameterShift) {
        const double localFlattening = flattening(_eccentricitySquared);
        _shift.molodenskyForward = localFlattening * (_shift.refSemiMajorAxis - _semiMajorAxis) +
                                   _semiMajorAxis * (_shift.refFlattening - localFlattening);
        _shift.molodenskyReverse = (_semiMajorAxis - _shift.refSemiMajorAxis) * _shift.refFlattening +
                                   (localFlattening - _shift.refFlattening) * _shift.refSemiMajorAxis;
    }
}

void TQEllipsoid::toLocalDatum(double& longitude, double& latitude) const {
    const auto point = datum().fromReference(Geographic<double>{longitude, latitude});
    longitude = point.lambda;
    latitude = point.phi;
}

void TQEllipsoid::toReferenceDatum(double& longitude, double& latitude) const {
    const auto point = datum().toReference(Geographic<double>{longitude, latitude});
    longitude = point.lambda;
    latitude = point.phi;
}

double TQEllipsoid::inverseFlattening() const { return 1.0 / flattening(_eccentricitySquared); }

TQEllipsoid::DatumShiftParameters TQEllipsoid::datumShiftParameters() const {
    return {_shift.dx, _shift.dy, _shift.dz, _shift.rx, _shift.ry, _shift.rz, _shift.scalePpm};
}

void TQEllipsoid::setDatumShift(DatumShiftKind kind, double refSemiMajorAxis, double refFlattening,
                                const DatumShiftParameters& parameters) {
    _shift.kind = kind;
    _shift.refSemiMajorAxis = refSemiMajorAxis;
    _shift.refFlattening = refFlattening;
    const auto stored = shiftFields(SevenParameterShift).subspan(2);
    for (std::size_t i = 0; i < stored.size(); ++i) {
        _shift.*stored[i].value = parameters[i];
    }
    deriveShift();
}

void TQEllipsoid::setAxes(double semiMajorAxis, double eccentricitySquared) {
    _semiMajorAxis = semiMajorAxis;
    _eccentricitySquared = eccentricitySquared;
    deriveShift();
}
