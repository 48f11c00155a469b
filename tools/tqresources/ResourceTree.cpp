#include "tools/tqresources/ResourceTree.h"

#include "ellipsoid/TQDatumFile.h"
#include "manager/TQProjectionFile.h"
#include "projection/TQProjection.h"
#include "support/TQFile.h"
#include "support/TQFormat.h"
#include "support/TQNumberText.h"
#include "support/TQPath.h"
#include "support/TQUnit.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <utility>

namespace {

// Methods of transformations and their parameters: EPSG Guidance Note 7-2.
constexpr int geocentricTranslations = 9603;
constexpr int positionVector = 9606;
constexpr int coordinateFrame = 9607;
constexpr int translationX = 8605;
constexpr int translationY = 8606;
constexpr int translationZ = 8607;
constexpr int rotationX = 8608;
constexpr int rotationY = 8609;
constexpr int rotationZ = 8610;
constexpr int scaleDifference = 8611;

/// The line of a datum file that undoes a transformation: every parameter has the other sign, which the
/// Guidance Note allows for such small ones. Coordinate frame rotations are the negative of ours as it is.
std::string shiftLine(const EpsgOperation& toWgs84) {
    const auto negative = [&toWgs84](int code) { return 0.0 - toWgs84.parameter(code); };
    std::string line = tq_format("%.13g %.13g %.13g", negative(translationX), negative(translationY),
                                 negative(translationZ));
    if (toWgs84.method == geocentricTranslations) {
        return line;
    }
    if (toWgs84.method != positionVector && toWgs84.method != coordinateFrame) {
        throw NotExpressible("has neither three nor seven parameters");
    }
    const double sense = toWgs84.method == positionVector ? 1.0 : -1.0;
    const auto rotation = [&](int code) { return 0.0 + sense * tq_deg2rad(negative(code)); };
    constexpr double partsPerMillion = 1e6;
    return line + tq_format(" %.13g %.13g %.13g %.13g", rotation(rotationX), rotation(rotationY),
                            rotation(rotationZ), negative(scaleDifference) * partsPerMillion);
}

/// Writes a file as a whole.
void writeLines(TQFile& file, const std::vector<std::string>& lines) {
    int code = file.open(TQFile::Write);
    for (const std::string& line : lines) {
        code = code != 0 ? code : file.writeLine(line.c_str());
    }
    if (code != 0 || file.close() != 0) {
        throw NotExpressible(file.path().utf8() + " cannot be written");
    }
}

/// What is left between a projection and PROJ's images, in metres.
struct Residual {
    TQPoint mean;         ///< on the plane
    double forward = 0.0; ///< the largest distance on the plane
    double inverse = 0.0; ///< the largest distance on the ground
};

/// The larger one; what is not a number is larger than all.
double larger(double one, double other) { return one >= other || std::isnan(one) ? one : other; }

Residual residualOf(const TQProjection& projection, const EpsgSystem& system) {
    const double radius = projection.ellipsoid()->semiMajorAxis();
    const auto count = static_cast<double>(system.images.size());
    Residual residual{};
    for (const auto& [geo, global] : system.images) {
        TQPoint plane;
        projection.convertGeoPt(geo, plane);
        const TQPoint difference{global.x - plane.x, global.y - plane.y};
        residual.mean = {residual.mean.x + difference.x / count, residual.mean.y + difference.y / count};
        residual.forward = larger(residual.forward, std::hypot(difference.x, difference.y));
        TQPoint ground;
        projection.convertGlobalPt(global, ground);
        const double turn = 2.0 * std::numbers::pi;
        const double east = std::remainder(ground.x - geo.x, turn) * std::cos(geo.y);
        residual.inverse = larger(residual.inverse, radius * std::hypot(east, ground.y - geo.y));
    }
    return residual;
}

/// Throws for a projection that is not the system.
void expectAgreement(const Residual& residual) {
    constexpr double millimetre = 1e-3;
    constexpr double decimetre = 0.1; // quirks and short series of the ways back: docs/accuracy.md
    if (!(residual.forward < millimetre)) {
        throw NotExpressible(tq_format("differs from PROJ's by %g m", residual.forward));
    }
    if (!(residual.inverse < decimetre)) {
        throw NotExpressible(tq_format("does not come back by %g m", residual.inverse));
    }
}

/// Whether a datum is another one but for its prime meridian, as "Lisbon 1937 (Lisbon)" is "Lisbon 1937".
bool isSameDatum(const std::string& datum, const std::string& other) {
    return datum == other || datum.starts_with(other + " (");
}

/// A projection file to be written.
struct Target {
    TQString path;
    TQString name;
    TQEllipsoid& ellipsoid;
    const EpsgSystem& system;
};

/// Writes a form and answers the residual of what is read again, with the decimals of the file, on the
/// datum of the system.
Residual writtenResidual(const Target& target, const NativeForm& form) {
    const std::unique_ptr<TQProjection> projection = form.make();
    projection->rename(target.name);
    projection->setEllipsoid(&target.ellipsoid);
    if (!TQProjectionFile::write(*projection, target.path)) {
        throw NotExpressible("cannot be written");
    }
    TQEllipsoid unshifted(target.ellipsoid);
    unshifted.setDatumShift(TQEllipsoid::NoDatumShift, 0.0, 0.0, {});
    const auto filed = TQProjectionFile::createProjectionFromPath(target.path);
    filed->setEllipsoid(&unshifted);
    return residualOf(*filed, target.system);
}

double roundedToTenthOfMillimetre(double metres) { return std::round(metres * 1e4) / 1e4; }

} // namespace

ResourceTree::ResourceTree(std::filesystem::path directory, std::filesystem::path lists)
    : _directory(std::move(directory)), _lists(std::move(lists)) {}

TQString ResourceTree::path(const char* folder, std::string name, const char* extension) const {
    std::filesystem::create_directories(_directory / folder);
    std::ranges::replace(name, '/', '_');
    return tq_createPath(tq_stringFromPath(_directory / folder), TQString((name + extension).c_str()));
}

const std::string& ResourceTree::ellipsoidName(const std::string& code) const {
    const auto found = _ellipsoidNames.find(code);
    if (found == _ellipsoidNames.end()) {
        throw NotExpressible("has an ellipsoid that is not in the list: " + code);
    }
    return found->second;
}

void ResourceTree::writeEllipsoid(const CodeLine& line) {
    const EpsgEllipsoid size = _dataSet.ellipsoid(line.code);
    auto ellipsoid = std::make_unique<TQEllipsoid>(TQString(line.name.c_str()), size.semiMajorAxis,
                                                   size.eccentricitySquared);
    TQFile file(path("Ellipsoids", line.name, ".ell"));
    if (file.open(TQFile::Write) != 0 || ellipsoid->writeToFile(file) != 0 || file.close() != 0) {
        throw NotExpressible("cannot be written");
    }
    _ellipsoids.addEllipsoid(std::move(ellipsoid));
    _ellipsoidNames[line.code] = line.name;
}

void ResourceTree::writeDatum(const CodeLine& line) {
    const EpsgShift shift = _dataSet.shiftToWgs84(line.code);
    TQFile file(path("Datum", line.name, ".dtm"));
    writeLines(file, {"# 1", ellipsoidName(shift.ellipsoidCode), shiftLine(shift.operation), "WGS 84"});
    std::unique_ptr<TQEllipsoid> shifted;
    std::string problem;
    if (TQDatumFile::read(file, _ellipsoids, shifted, problem) != TQDatumFile::Read) {
        throw NotExpressible("cannot be read back: " + problem);
    }
    _ellipsoids.addEllipsoid(std::move(shifted));
    _datums[line.name] = {shift.datum, shift.ellipsoidCode};
}

/// The ellipsoid of a system with the shift of a datum of ours, which must be the system's own but for the
/// prime meridian, or without.
TQEllipsoid& ResourceTree::ellipsoidOf(const EpsgSystem& system, const std::string& datum) const {
    std::string name = ellipsoidName(system.ellipsoidCode);
    if (!datum.empty()) {
        const auto found = _datums.find(datum);
        if (found == _datums.end() || !isSameDatum(system.datum, found->second.epsgName) ||
            found->second.ellipsoidCode != system.ellipsoidCode) {
            throw NotExpressible("is not on the datum " + datum + " but on " + system.datum);
        }
        name += "/" + datum;
    }
    return *_ellipsoids.ellipsoidWithName(TQString(name.c_str()));
}

void ResourceTree::writeProjection(const CodeLine& line) {
    const EpsgSystem system = _dataSet.system(line.code);
    const Target target{path("Projection", line.name, ".proj"), TQString(line.name.c_str()),
                        ellipsoidOf(system, line.datum), system};
    NativeForm form = nativeFormOf(system);
    Residual residual = writtenResidual(target, form);
    if (form.isRounded) {
        double& easting = form.parameter("falseEasting");
        double& northing = form.parameter("falseNorthing");
        easting = roundedToTenthOfMillimetre(easting + residual.mean.x);
        northing = roundedToTenthOfMillimetre(northing + residual.mean.y);
        residual = writtenResidual(target, form);
    }
    try {
        expectAgreement(residual);
    } catch (const NotExpressible&) {
        std::filesystem::remove(tq_filesystemPath(target.path));
        throw;
    }
    addArea(line);
}

void ResourceTree::addArea(const CodeLine& line) {
    const auto [west, south, east, north] = _dataSet.areaOfUse(line.code);
    std::string text = line.name;
    for (const double degrees : {west, south, east, north}) {
        text += "\t" + tq_shortestText(degrees);
    }
    _areaLines.push_back(text);
}

void ResourceTree::writeAreas() const {
    TQFile file(tq_createPath(tq_stringFromPath(_directory), TQString("areas.tsv")));
    writeLines(file, _areaLines);
}

void ResourceTree::writeEach(const char* list, void (ResourceTree::*writeOne)(const CodeLine&)) {
    for (const CodeLine& line : readCodeList(_lists / list)) {
        try {
            (this->*writeOne)(line);
        } catch (const NotExpressible& reason) {
            std::fprintf(stderr, "tqresources: EPSG:%s, %s: %s\n", line.code.c_str(), line.name.c_str(),
                         reason.what());
            _isComplete = false;
        }
    }
}

std::string ResourceTree::versionOfLists() const {
    const std::vector<CodeLine> lines = readCodeList(_lists / "data-set.txt");
    return lines.empty() ? "" : lines.front().code;
}

bool ResourceTree::write() {
    const std::string version = versionOfLists();
    if (_dataSet.version() != version) {
        std::fprintf(stderr, "tqresources: the lists are for version %s of the EPSG data set, PROJ has %s\n",
                     version.c_str(), _dataSet.version().c_str());
        return false;
    }
    writeEach("ellipsoids.tsv", &ResourceTree::writeEllipsoid);
    writeEach("datums.tsv", &ResourceTree::writeDatum);
    writeEach("projections.tsv", &ResourceTree::writeProjection);
    writeEach("made-by-hand.tsv", &ResourceTree::addArea);
    writeAreas();
    return _isComplete;
}
