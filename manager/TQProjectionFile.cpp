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

} // namespace

std::unique_ptr<TQProjection> TQProjectionFile::createProjectionFromPath(const TQString& path) {
    TQFile file(path);
    if (file.open(TQFile::Read) != 0 || file.readFileVersion() != 0) {
        return nullptr;
    }
    if (file.fileVersion() != fileVersion) {
        tq_perror("TQProjMgr::createProjectionFromPath: Unknown version\n");
        return nullptr;
    }
    TQString line;
    if (file.readLine(line) != 0) {
        return nullptr;
    }
    std::unique_ptr<TQProjection> projection = projectionOfLine(line);
    if (!projection) {
        tq_perror("TQProjMgr::createProjectionFromPath: Unknown projection type\n");
        return nullptr;
    }
    constexpr bool withHeader = true;
    if (projection->loadFromFile(file, withHeader) != 0) {
        tq_perrorf("TQProjMgr::createProjectionFromPath: unable to read projection file: %s", path);
        return nullptr;
    }
    return projection;
}

bool TQProjectionFile::write(const TQProjection& projection, const TQString& path) {
    TQFile file(path);
    if (file.open(TQFile::Write) != 0) {
        return false;
    }
    file.setFileVersion(fileVersion);
    if (file.writeFileVersion() != 0) {
        return false;
    }
    const signed char typeCode = projection.projectionType();
    if (typeCode < 0) {
        tq_perrorf("TQProjMgr::saveProjection: Unknown projection type: %d\n", typeCode);
        file.close();
        return false;
    }
    constexpr bool withHeader = true;
    if (file.writeLine(tq_format("%d", typeCode).c_str()) != 0) {
        return false;
    }
    if (const int code = projection.writeToFile(file, withHeader)) {
        file.abandon();
        tq_perrorf("Error Nr %d while writing projection file: %s\n", code, path);
        return false;
    }
    return file.close() == 0;
}
