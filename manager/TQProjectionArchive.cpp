#include "manager/TQProjectionArchive.h"

#include "manager/TQProjMgr.h"
#include "manager/TQProjectionFactory.h"
#include "manager/TQProjectionIntake.h"
#include "support/TQMessages.h"
#include "support/TQWeakPointer.h"

#include <vector>

namespace {

constexpr std::int16_t newestVersion = 0;

} // namespace

void TQProjectionArchive::write(const TQProjMgr& manager, TQWriteStream& stream, bool usedOnly) {
    std::vector<TQWeakPointer<const TQProjection>> wanted;
    HashState<TQProjection> state;
    while (const TQProjection* projection = manager.traverseUserProjs(&state)) {
        const bool isWanted = usedOnly ? manager.isProjectionUsed(projection) : !projection->isResource();
        if (isWanted && projection->projectionType() >= 0) {
            wanted.emplace_back(projection);
        }
    }
    std::erase_if(wanted, [](const auto& projection) { return projection.get() == nullptr; }); // by observers
    manager.ellipsoidManager().archiveTo(&stream, usedOnly);
    stream.declareVersion(TQProjMgr::ownName, newestVersion);
    stream.write(static_cast<std::int32_t>(wanted.size()));
    for (const auto& projection : wanted) {
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
    std::int32_t count = 0;
    stream.read(count);
    for (; count > 0; --count) {
        std::int32_t id = 0;
        std::unique_ptr<TQProjection> projection = readEntry(manager, stream, id);
        if (projection == nullptr) {
            return;
        }
        // What refers to the projection from here on means the one that the manager keeps.
        stream.setObjForReference(TQProjectionIntake(manager, stream.flags()).merge(std::move(projection)),
                                  id);
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
