#include "ellipsoid/TQEllipsoid.h"

#include "ellipsoid/formulas/AbridgedMolodensky.h"
#include "ellipsoid/formulas/Helmert.h"
#include "support/TQArchiveBlock.h"
#include "support/TQFile.h"
#include "support/TQMessages.h"
#include "support/TQNumberText.h"
#include "support/TQReadStream.h"
#include "support/TQTextBlock.h"
#include "support/TQWriteStream.h"

#include <cmath>
#include <vector>

using tq::formulas::AbridgedMolodensky;
using tq::formulas::Geographic;
using tq::formulas::Helmert;

namespace {

constexpr double semiMajorAxisTolerance = 1.0;
constexpr double eccentricitySquaredTolerance = 1e-7;
constexpr const char* numberFormat = "%.13g";
constexpr int nameMissing = 5004;
constexpr int semiMajorAxisMissing = 5005;
constexpr int eccentricitySquaredMissing = 5006;
constexpr int missingLaterLine = 5008;

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
    double TQEllipsoid::*value;
    double tolerance;
};

// In the order of files and archives; a three-parameter shift has the first five.
std::span<const TQEllipsoid::ShiftField> TQEllipsoid::shiftFields(std::uint32_t kind) {
    static constexpr ShiftField fields[] = {
        {&TQEllipsoid::_refSemiMajorAxis, 1.0},
        {&TQEllipsoid::_refFlattening, 1e-8},
        {&TQEllipsoid::_dx, 1.0},
        {&TQEllipsoid::_dy, 1.0},
        {&TQEllipsoid::_dz, 1.0},
        {&TQEllipsoid::_rx, 1e-12},
        {&TQEllipsoid::_ry, 1e-12},
        {&TQEllipsoid::_rz, 1e-12},
        {&TQEllipsoid::_scalePpm, 1e-6},
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
    : TQObject(other), _datumShiftKind(other._datumShiftKind),
      _name(other._name ? std::make_unique<TQString>(*other._name) : nullptr),
      _semiMajorAxis(other._semiMajorAxis), _eccentricitySquared(other._eccentricitySquared) {
    for (const ShiftField& field : shiftFields(_datumShiftKind)) {
        this->*field.value = other.*field.value;
    }
    _refEccentricitySquared = other._refEccentricitySquared;
    _molodenskyForward = other._molodenskyForward;
    _molodenskyReverse = other._molodenskyReverse;
}

TQEllipsoid::~TQEllipsoid() = default;

bool TQEllipsoid::isEqual(const TQObject* other) const {
    const auto* that = dynamic_cast<const TQEllipsoid*>(other);
    if (that == nullptr || !tq_namesAreEqual(name(), that->name()) ||
        differs(_semiMajorAxis, that->_semiMajorAxis, semiMajorAxisTolerance) ||
        differs(_eccentricitySquared, that->_eccentricitySquared, eccentricitySquaredTolerance) ||
        _datumShiftKind != that->_datumShiftKind) {
        return false;
    }
    for (const ShiftField& field : shiftFields(_datumShiftKind)) {
        if (differs(this->*field.value, that->*field.value, field.tolerance)) {
            return false;
        }
    }
    return true;
}

void TQEllipsoid::archiveTo(TQWriteStream* stream) const {
    stream->declareVersion("TQEllipsoid", 4);
    TQString::archive(name(), stream);
    stream->write(_semiMajorAxis);
    stream->write(_eccentricitySquared);
    stream->write(static_cast<char>(_datumShiftKind));
    for (const ShiftField& field : shiftFields(_datumShiftKind)) {
        stream->write(this->*field.value);
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
    _datumShiftKind = static_cast<unsigned char>(kind);
    for (const ShiftField& field : shiftFields(_datumShiftKind)) {
        stream->read(this->*field.value);
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
        return nameMissing;
    }
    _name = std::make_unique<TQString>(line);
    if (file.readNumberLine(line) != 0) {
        return semiMajorAxisMissing;
    }
    _semiMajorAxis = line.convertToDouble();
    if (file.readNumberLine(line) != 0) {
        return eccentricitySquaredMissing;
    }
    _eccentricitySquared = line.convertToDouble();
    _datumShiftKind = NoDatumShift;
    if (version >= 2) {
        if (file.readNumberLine(line) != 0) {
            return missingLaterLine;
        }
        _datumShiftKind = static_cast<std::uint32_t>(line.convertToLong());
    }
    return loadShiftLines(file);
}

// The reference axis and flattening stand on a line each, the other parameters on one line together.
int TQEllipsoid::loadShiftLines(TQFile& file) {
    const auto fields = shiftFields(_datumShiftKind);
    if (fields.empty()) {
        return 0;
    }
    TQString line;
    for (const ShiftField& field : fields.first(2)) {
        if (file.readNumberLine(line) != 0) {
            return missingLaterLine;
        }
        this->*field.value = line.convertToDouble();
    }
    std::vector<double*> targets;
    for (const ShiftField& field : fields.subspan(2)) {
        targets.push_back(&(this->*field.value));
    }
    if (file.readNumberLine(line, {static_cast<int>(targets.size())}) != 0) {
        return missingLaterLine;
    }
    tq_scanDoubles(line.utf8(), targets);
    return 0;
}

std::string TQEllipsoid::meaningOfReaderCode(int code) {
    if (const char* const meaning = textBlock.meaningOf(code)) {
        return meaning;
    }
    switch (code) {
    case nameMissing:
        return "the line of the name is missing";
    case semiMajorAxisMissing:
        return "the line of the semi-major axis is missing";
    case eccentricitySquaredMissing:
        return "the line of the squared eccentricity is missing";
    case missingLaterLine:
        return "a line of the datum shift is missing";
    default:
        return "a line is missing or not understood";
    }
}

int TQEllipsoid::writeToFile(TQFile& file) const {
    constexpr bool withHeader = true;
    if (const int code = textBlock.beginWriting(file, withHeader)) {
        return code;
    }
    if (file.writeLine(tq_textOfName(name())) != 0 ||
        file.writeLine(tq_format(numberFormat, _semiMajorAxis).c_str()) != 0 ||
        file.writeLine(tq_format(numberFormat, _eccentricitySquared).c_str()) != 0) {
        return textBlock.writeFailed;
    }
    return writeShiftLines(file);
}

int TQEllipsoid::writeShiftLines(TQFile& file) const {
    if (file.writeLine(tq_format("%u", _datumShiftKind).c_str()) != 0) {
        return missingLaterLine;
    }
    const auto fields = shiftFields(_datumShiftKind);
    if (fields.empty()) {
        return 0;
    }
    std::string parameters;
    for (const ShiftField& field : fields.subspan(2)) {
        parameters += (parameters.empty() ? "" : " ") + tq_format(numberFormat, this->*field.value);
    }
    const bool failed = file.writeLine(tq_format(numberFormat, _refSemiMajorAxis).c_str()) != 0 ||
                        file.writeLine(tq_format(numberFormat, _refFlattening).c_str()) != 0 ||
                        file.writeLine(parameters.c_str()) != 0;
    return failed ? missingLaterLine : 0;
}

// Puts the fields that the kind does not have to 0 and computes those that are never stored.
void TQEllipsoid::deriveShift() {
    const auto present = shiftFields(_datumShiftKind);
    if (present.empty()) {
        _datumShiftKind = NoDatumShift;
    }
    for (const ShiftField& field : shiftFields(SevenParameterShift).subspan(present.size())) {
        this->*field.value = 0.0;
    }
    _refEccentricitySquared = (2.0 - _refFlattening) * _refFlattening;
    _molodenskyForward = 0.0;
    _molodenskyReverse = 0.0;
    if (_datumShiftKind == ThreeParameterShift) {
        const double localFlattening = flattening(_eccentricitySquared);
        _molodenskyForward = localFlattening * (_refSemiMajorAxis - _semiMajorAxis) +
                             _semiMajorAxis * (_refFlattening - localFlattening);
        _molodenskyReverse = (_semiMajorAxis - _refSemiMajorAxis) * _refFlattening +
                             (localFlattening - _refFlattening) * _refSemiMajorAxis;
    }
}

void TQEllipsoid::toLocalDatum(double& longitude, double& latitude) const {
    Geographic<double> point{longitude, latitude};
    if (_datumShiftKind == ThreeParameterShift) {
        const AbridgedMolodensky shift{
            _dx, _dy, _dz, _molodenskyReverse, _refSemiMajorAxis, _refEccentricitySquared};
        point = shift.shifted(point);
    } else if (_datumShiftKind == SevenParameterShift) {
        const Helmert shift{_dx, _dy, _dz, _rx, _ry, _rz, 1.0 + _scalePpm * 1e-6};
        const auto reference = geocentricFromGeodetic(point, _refSemiMajorAxis, _refEccentricitySquared);
        point = geodeticFromGeocentric(shift.forward(reference), _semiMajorAxis, _eccentricitySquared);
    }
    longitude = point.lambda;
    latitude = point.phi;
}

void TQEllipsoid::toReferenceDatum(double& longitude, double& latitude) const {
    Geographic<double> point{longitude, latitude};
    if (_datumShiftKind == ThreeParameterShift) {
        const AbridgedMolodensky shift{
            -_dx, -_dy, -_dz, _molodenskyForward, _semiMajorAxis, _eccentricitySquared};
        point = shift.shifted(point);
    } else if (_datumShiftKind == SevenParameterShift) {
        const Helmert shift{_dx, _dy, _dz, _rx, _ry, _rz, 1.0 + _scalePpm * 1e-6};
        const auto local = geocentricFromGeodetic(point, _semiMajorAxis, _eccentricitySquared);
        point = geodeticFromGeocentric(shift.inverse(local), _refSemiMajorAxis, _refEccentricitySquared);
    }
    longitude = point.lambda;
    latitude = point.phi;
}

double TQEllipsoid::inverseFlattening() const { return 1.0 / flattening(_eccentricitySquared); }

TQEllipsoid::DatumShiftParameters TQEllipsoid::datumShiftParameters() const {
    return {_dx, _dy, _dz, _rx, _ry, _rz, _scalePpm};
}

void TQEllipsoid::setDatumShift(DatumShiftKind kind, double refSemiMajorAxis, double refFlattening,
                                const DatumShiftParameters& parameters) {
    _datumShiftKind = kind;
    _refSemiMajorAxis = refSemiMajorAxis;
    _refFlattening = refFlattening;
    const auto stored = shiftFields(SevenParameterShift).subspan(2);
    for (std::size_t i = 0; i < stored.size(); ++i) {
        this->*stored[i].value = parameters[i];
    }
    deriveShift();
}
