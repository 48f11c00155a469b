#include "manager/TQProjectionFile.h"

#include "manager/TQProjectionFactory.h"
#include "projection/TQProjection.h"
#include "support/TQFile.h"
#include "support/TQMessages.h"

namespace {

constexpr int fileVersion = 1;

/// The projection that a type-code line names: a long modulo 256, of which values above 127 are none.
std::unique_ptr<TQProjection> projectionOfLine(const TQString& line) {
    constexpr unsigned largestCode = 127;
    const unsigned code = static_cast<unsigned>(line.convertToLong()) % 256U;
    return code <= largestCode ? tq_newProjectionOfType(static_cast<int>(code)) : nullptr;
}

void reportUnknownType(signed char typeCode) {
    tq_perrorf("TQProjMgr::saveProjection: Unknown projection type: %d\n", typeCode);
}

/// Writes a projection into a file that is not open yet.
bool writeInto(TQFile& file, const TQProjection& projection) {
    if (file.open(TQFile::Write) != 0) {
        return false;
    }
    file.setFileVersion(fileVersion);
    if (file.writeFileVersion() != 0) {
        return false;
    }
    const signed char typeCode = projection.projectionType();
    if (typeCode < 0) {
        reportUnknownType(typeCode);
        file.close();
        return false;
    }
    constexpr bool withHeader = true;
    if (file.writeLine(tq_format("%d", typeCode).c_str()) != 0) {
        return false;
    }
    if (const int code = projection.writeToFile(file, withHeader)) {
        file.abandon();
        tq_perrorf("Error Nr %d while writing projection file: %s\n", code, file.path());
        return false;
    }
    if (!tq_isProjectionTypeKnown(typeCode)) {
        file.abandon(); // nobody could read it
        reportUnknownType(typeCode);
        return false;
    }
    return file.close() == 0;
}

} // namespace

int TQProjectionFile::read(TQFile& file, std::unique_ptr<TQProjection>& projection) {
    projection.reset();
    if (file.open(TQFile::Read) != 0) {
        return file.failReading(NotOpened, "the file cannot be opened");
    }
    if (file.readFileVersion() != 0) {
        return file.failReading(VersionMissing, "the file version line is missing");
    }
    if (file.fileVersion() != fileVersion) {
        return file.failReading(VersionUnknown, "the file version is not known");
    }
    TQString line;
    if (file.readNumberLine(line) != 0) {
        return file.failReading(TypeMissing, "the line of the type code is missing");
    }
    projection = projectionOfLine(line);
    if (projection == nullptr) {
        return file.failReading(TypeUnknown, "the type code is not known");
    }
    constexpr bool withHeader = true;
    const int code = projection->loadFromFile(file, withHeader);
    return code == Read ? Read : file.failReading(code, "a line is missing or not understood");
}

std::unique_ptr<TQProjection> TQProjectionFile::createProjectionFromPath(const TQString& path) {
    TQFile file(path);
    std::unique_ptr<TQProjection> projection;
    switch (read(file, projection)) {
    case Read:
        return projection;
    case NotOpened:
    case VersionMissing:
    case TypeMissing:
        break;
    case VersionUnknown:
        tq_perror("TQProjMgr::createProjectionFromPath: Unknown version\n");
        break;
    case TypeUnknown:
        tq_perror("TQProjMgr::createProjectionFromPath: Unknown projection type\n");
        break;
    default:
        tq_perrorf("TQProjMgr::createProjectionFromPath: unable to read projection file: %s", path);
    }
    return nullptr;
}

bool TQProjectionFile::write(const TQProjection& projection, const TQString& path, Numbers numbers) {
    std::error_code reason;
    return write(projection, path, reason, numbers);
}

bool TQProjectionFile::write(const TQProjection& projection, const TQString& path, std::error_code& reason,
                             Numbers numbers) {
    TQFile file(path);
    file.setWritesNumbersExactly(numbers == Numbers::Exact);
    const bool isWritten = writeInto(file, projection);
    reason = file.error();
    return isWritten;
}
