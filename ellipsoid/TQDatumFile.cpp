#include "ellipsoid/TQDatumFile.h"

#include "ellipsoid/TQEllMgr.h"
#include "support/TQFile.h"
#include "support/TQNumberText.h"
#include "support/TQPath.h"

#include <array>
#include <cmath>

namespace {

using Parameters = TQEllipsoid::DatumShiftParameters;

constexpr int longestLine = 254;
constexpr int knownVersion = 1;

/// The next line; empty when there is none.
TQString nextLine(TQFile& file) {
    TQString line;
    file.readLine(line, longestLine);
    return line;
}

bool isKnownVersion(const TQString& line) {
    const std::string text = line.utf8();
    return text.starts_with('#') && tq_parseLong(std::string_view(text).substr(1)) == knownVersion;
}

/// The kind of shift that so many numbers make; NoDatumShift when they make none.
TQEllipsoid::DatumShiftKind kindFromLine(const TQString& line, Parameters& parameters) {
    std::array<double*, std::tuple_size_v<Parameters>> targets{};
    for (std::size_t index = 0; index < targets.size(); ++index) {
        targets[index] = &parameters[index];
    }
    switch (tq_scanDoubles(line.utf8(), targets)) {
    case 3:
        return TQEllipsoid::ThreeParameterShift;
    case 7:
        return TQEllipsoid::SevenParameterShift;
    default:
        return TQEllipsoid::NoDatumShift;
    }
}

/// The name of a file without directory and extension.
TQString datumName(const TQString& path) { return tq_stringFromPath(tq_filesystemPath(path).stem()); }

} // namespace

TQDatumFile::Code TQDatumFile::read(const TQString& path, const TQEllMgr& registered,
                                    std::unique_ptr<TQEllipsoid>& shifted) {
    TQFile file(path);
    if (file.open(TQFile::Read) != 0) {
        return NotOpened;
    }
    const bool isKnown = isKnownVersion(nextLine(file));
    const TQEllipsoid* local = registered.ellipsoidWithName(nextLine(file));
    Parameters parameters{};
    const TQEllipsoid::DatumShiftKind kind = kindFromLine(nextLine(file), parameters);
    const TQEllipsoid* reference = registered.ellipsoidWithName(nextLine(file));
    if (!isKnown || local == nullptr || kind == TQEllipsoid::NoDatumShift || reference == nullptr) {
        return NotUnderstood;
    }
    shifted = tq_copyOf(*local);
    TQString name = *local->name();
    name.append("/");
    name.append(datumName(path));
    shifted->rename(name);
    shifted->setDatumShift(kind, reference->semiMajorAxis(),
                           1.0 - std::sqrt(1.0 - reference->eccentricitySquared()), parameters);
    return Read;
}
