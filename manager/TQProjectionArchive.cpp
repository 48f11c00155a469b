#include "manager/TQProjectionArchive.h"

#include "manager/TQProjMgr.h"
#include "manager/TQProjectionFactory.h"
#include "manager/TQProjectionIntake.h"
#include "support/TQMessages.h"
#include "support/TQWeakPointer.h"

#include <utility>
#include <vector>

namespace {

constexpr std::int16_t newestVersion = 0;

} // namespace

void TQProjectionArchive::write(const TQProjMgr& manager, TQWriteStream& stream, bool usedOnly) {
    const auto wanted = manager.ownProjectionsThat([&manager, usedOnly](const TQProjection& projection) {
        return projection.projectionType() >= 0 &&
               (usedOnly ? manager.isProjectionUsed(&projection) : !projection.isResource());
    });
    manager.ellipsoidManager().archiveTo(&stream, usedOnly);
    stream.declareVersion(TQProjMgr::ownName, newestVersion);
    stream.write(static_cast<std::int32_t>(wanted.size()));
    for (const TQWeakPointer<TQProjection>& projection : wanted) {
        writeEntry(*projection.get(), stream);
    }
}

void TQProjectionArchive::writeEntry(const TQProjection& projection, TQWriteStream& stream) {
    stream.writeObjReference(&projection);
    stream.write(static_cast<char>(projection.projectionType()));
    projection.archiveTo(&stream);
}

void TQProjectionArchive::read(TQProjMgr& manager, TQReadStream& stream) {
    constexpr bool inDocument = true;
    if (manager.ellipsoidManager().unarchiveFrom(&stream, inDocument) != TQEllMgr::AllRead) {
        return;
    }
    const int version = stream.version(TQProjMgr::ownName);
    if (version != newestVersion) {
        tq_perrorf("TQProjMgr::unarchiveFrom(TQReadStream *, bool): version %d is unknown.\n", version);
        return;
    }
    // What refers to a projection of the document means the one that the manager keeps for it; a later one
    // may take its place.
    std::vector<std::pair<std::int32_t, TQWeakPointer<TQProjection>>> meanings;
    std::int32_t count = 0;
    stream.read(count);
    for (; count > 0; --count) {
        std::int32_t id = 0;
        std::unique_ptr<TQProjection> projection = readEntry(manager, stream, id);
        if (projection == nullptr) {
            break;
        }
        meanings.emplace_back(id, TQProjectionIntake(manager, stream.flags()).merge(std::move(projection)));
    }
    for (const auto& [id, projection] : meanings) {
        stream.setObjForReference(projection.get(), id);
    }
}

std::unique_ptr<TQProjection> TQProjectionArchive::readEntry(const TQProjMgr& manager, TQReadStream& stream,
                                                             std::int32_t& id) {
    const int answer = stream.readObjReference(id);
    if (answer > 0) {
        tq_perror(
            "TQProjection *newProjFromStream(TQReadStream *stream): projection already unarchived ?!?\n");
    }
    if (answer != 0) {
        return nullptr;
    }
    char byte = 0;
    stream.read(byte);
    const int typeCode = static_cast<signed char>(byte);
    if (stream.failed()) {
        return nullptr;
    }
    std::unique_ptr<TQProjection> projection = tq_unarchivedProjectionOfType(typeCode, stream);
    if (projection == nullptr) {
        tq_perrorf("newProjFromStream(TQReadStream *): projection type %d is unknown.\n", typeCode);
        return nullptr;
    }
    const bool isOfUnknownVersion =
        projection->name() == nullptr && projection->pendingEllipsoidName() == nullptr;
    if (isOfUnknownVersion) {
        stream.fail(); // nobody knows where the next one begins
    }
    if (stream.failed() || !manager.awakeOneProjection(*projection)) {
        return nullptr;
    }
    projection->setIsResource((stream.flags() & TQProjMgr::FromDocument) == 0);
    projection->setIsUserDefined(false);
    stream.setObjForReference(projection.get(), id);
    return projection;
}
