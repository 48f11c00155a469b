#include "manager/TQProjectionArchive.h"

#include "manager/TQProjMgr.h"
#include "manager/TQProjectionFactory.h"
#include "manager/TQProjectionIntake.h"
#include "proj/TQPrProj4.h"
#include "projections/TQPrGaussKruger.h"
#include "support/TQMessages.h"

#include <vector>

namespace {

constexpr std::int16_t newestVersion = 0;

/// A Gauss-Krueger of an old document that is none, having another scale factor or origin, as what it is.
std::unique_ptr<TQProjection> withoutFalseName(std::unique_ptr<TQProjection> projection) {
    const auto* const restricted = dynamic_cast<const TQPrGaussKruger*>(projection.get());
    if (restricted == nullptr || !restricted->isGeneral()) {
        return projection;
    }
    return std::make_unique<TQPrMercTransv>(*restricted);
}

} // namespace

void TQProjectionArchive::write(const TQProjMgr& manager, TQWriteStream& stream, bool usedOnly) {
    std::vector<const TQProjection*> written;
    HashState<TQProjection> state;
    while (const TQProjection* projection = manager.traverseUserProjs(&state)) {
        const bool isWanted = usedOnly ? manager.isProjectionUsed(projection) : !projection->isResource();
        if (isWanted && projection->projectionType() >= 0) {
            written.push_back(projection);
        }
    }
    manager.ellipsoidManager().archiveTo(&stream, usedOnly);
    stream.declareVersion(TQProjMgr::ownName, newestVersion);
    stream.write(static_cast<std::int32_t>(written.size()));
    for (const TQProjection* projection : written) {
        writeEntry(*projection, stream);
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
    std::unique_ptr<TQProjection> projection = stream.failed() ? nullptr : tq_newProjectionOfType(typeCode);
    if (projection == nullptr) {
        if (!stream.failed()) {
            tq_perrorf("newProjFromStream(TQReadStream *): projection type %d is unknown.\n", typeCode);
        }
        return nullptr;
    }
    projection->initFromStream(&stream);
    if (stream.failed()) {
        return nullptr;
    }
    projection = withoutFalseName(std::move(projection));
    if (typeCode != TQPrProj4::typeCode && !manager.awakeOneProjection(*projection)) {
        return nullptr;
    }
    projection->setIsResource((stream.flags() & TQProjMgr::FromDocument) == 0);
    projection->setIsUserDefined(false);
    stream.setObjForReference(projection.get(), id);
    return projection;
}
