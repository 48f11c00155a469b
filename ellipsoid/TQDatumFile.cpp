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

/// The registered ellipsoid that the next line names; null when there is no such ellipsoid, or no line.
const TQEllipsoid* nextEllipsoid(TQFile& file, const TQEllMgr& registered) {
    TQString line;
    return file.readLine(line, longestLine) == 0 ? registered.ellipsoidWithName(line) : nullptr;
}

bool isKnownVersion(const TQString& line) {
    const std::string text = line.utf8();
    return text.starts_with('#') && tq_parseLong(std::string_view(text).substr(1)) == knownVersion;
}

/// The kind of shift that the numbers of the next line make; NoDatumShift when they make none.
TQEllipsoid::DatumShiftKind nextShift(TQFile& file, Parameters& parameters) {
    TQString line;
    file.readNumberLine(line, {3, 7}, longestLine);
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

/// The local ellipsoid's name, "/", and the name of the datum, which is that of the file without directory
/// and extension.
TQString shiftedName(const TQEllipsoid& local, const TQString& path) {
    TQString name = *local.name();
    name.append("/");
    name.append(tq_stringFromPath(tq_filesystemPath(path).stem()));
    return name;
}

} // namespace

TQDatumFile::Code TQDatumFile::read(TQFile& file, const TQEllMgr& registered,
                                    std::unique_ptr<TQEllipsoid>& shifted, std::string& problem) {
    if (file.open(TQFile::Read) != 0) {
        problem = "the file cannot be opened";
        return NotOpened;
    }
    const auto notUnderstood = [&problem](const char* what) {
        problem = what;
        return NotUnderstood;
    };
    if (!isKnownVersion(nextLine(file))) {
        return notUnderstood("the first line is not \"# 1\"");
    }
    const TQEllipsoid* const local = nextEllipsoid(file, registered);
    if (local == nullptr) {
        return notUnderstood("the line of the local ellipsoid is missing, or names none that is registered");
    }
    Parameters parameters{};
    const TQEllipsoid::DatumShiftKind kind = nextShift(file, parameters);
    if (kind == TQEllipsoid::NoDatumShift) {
        return notUnderstood("there are neither three nor seven shift parameters");
    }
    const TQEllipsoid* const reference = nextEllipsoid(file, registered);
    if (reference == nullptr) {
        return notUnderstood(
            "the line of the reference ellipsoid is missing, or names none that is registered");
    }
    shifted = tq_copyOf(*local);
    shifted->rename(shiftedName(*local, file.path()));
    shifted->setDatumShift(kind, reference->semiMajorAxis(),
                           1.0 - std::sqrt(1.0 - reference->eccentricitySquared()), parameters);
    return Read;
}
