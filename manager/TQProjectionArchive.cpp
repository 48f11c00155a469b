#include "manager/TQProjectionArchive.h"

#include "manager/TQProjMgr.h"
#include "manager/TQProjectionFactory.h"
#include "manager/TQProjectionIntake.h"
#include "support/TQFormat.h"
#include "support/TQMessages.h"
#include "support/TQWeakPointer.h"

#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace {

constexpr std::int16_t newestVersion = 0;

/// What there is to say of a document that is being written. It is said when the document is written: whoever
/// hears it may destroy projections.
class Reports {
  public:
    template <class... Arguments>
    void add(std::string_view format, const Arguments&... arguments) {
        _reports.push_back({format, tq_format(format, arguments...)});
    }

    void print() const {
        for (const auto& [format, line] : _reports) {
            if (TQMessageScope::lets(format)) {
                tq_printError(line);
            }
        }
    }

  private:
    struct Report {
        std::string_view format; // of static storage
        std::string line;
    };

    std::vector<Report> _reports;
};

/// Whether a reader of the document could make a projection.
bool isReadable(const TQProjection& projection, Reports& reports) {
    const bool isKnown = tq_isProjectionTypeKnown(projection.projectionType());
    if (!isKnown) {
        reports.add("TQProjMgr::archiveTo(TQWriteStream *, bool): projection %s of unknown type %d is not "
                    "written.\n",
                    tq_textOfName(projection.name()), projection.projectionType());
    }
    return isKnown;
}

/// The ellipsoids of a document: those of the manager, and those that projections have of their own, as that
/// of a system of PROJ's, without which nobody could read them.
class Ellipsoids {
  public:
    Ellipsoids(const TQEllMgr& ofManager, Reports& reports) : _ellipsoids(ofManager), _reports(reports) {}

    /// Adds the ellipsoid of a projection, unless there is one of its name.
    void addThatOf(const TQProjection& projection) {
        const TQEllipsoid* const own = projection.ellipsoid();
        if (own == nullptr) {
            return;
        }
        const TQEllipsoid* const written = _ellipsoids.ellipsoidWithName(own->name());
        if (written == nullptr) {
            _ellipsoids.addEllipsoid(tq_copyOf(*own));
        } else if (!written->isIdentical(*own) && _reported.insert(written).second) {
            _reports.add(
                "TQProjMgr::archiveTo(TQWriteStream *, bool): there are several ellipsoids named %s; "
                "projection %s, perhaps others, will be read with another one than its own.\n",
                tq_textOfName(own->name()), tq_textOfName(projection.name()));
        }
    }

    void archiveTo(TQWriteStream& stream) const { _ellipsoids.archiveTo(&stream); }

  private:
    TQEllMgr _ellipsoids;
    Reports& _reports;
    std::unordered_set<const TQEllipsoid*> _reported;
};

} // namespace

void TQProjectionArchive::write(const TQProjMgr& manager, TQWriteStream& stream, bool usedOnly) {
    auto wanted = manager.ownProjectionsThat([&manager, usedOnly](const TQProjection& projection) {
        return usedOnly ? manager.isProjectionUsed(&projection) : !projection.isResource();
    });
    Reports reports;
    std::erase_if(wanted,
                  [&reports](const auto& projection) { return !isReadable(*projection.get(), reports); });
    Ellipsoids ellipsoids(manager.ellipsoidManager(), reports);
    for (const TQWeakPointer<TQProjection>& projection : wanted) {
        ellipsoids.addThatOf(*projection.get());
    }
    ellipsoids.archiveTo(stream);
    stream.declareVersion(TQProjMgr::ownName, newestVersion);
    stream.write(static_cast<std::int32_t>(wanted.size()));
    for (const TQWeakPointer<TQProjection>& projection : wanted) {
        writeEntry(*projection.get(), stream);
    }
    reports.print();
}

void TQProjectionArchive::writeEntry(const TQProjection& projection, TQWriteStream& stream) {
    stream.writeObjReference(&projection);
    stream.write(static_cast<char>(projection.projectionType()));
    projection.archiveTo(&stream);
}

bool TQProjectionArchive::read(TQProjMgr& manager, TQReadStream& stream) {
    constexpr bool inDocument = true;
    const int code = manager.ellipsoidManager().unarchiveFrom(&stream, inDocument);
    manager.followEllipsoids(manager.ellipsoidManager().takeChanged());
    if (code != TQEllMgr::AllRead) {
        return false;
    }
    const int version = stream.version(TQProjMgr::ownName);
    if (version != newestVersion) {
        tq_perrorf("TQProjMgr::unarchiveFrom(TQReadStream *, bool): version %d is unknown.\n", version);
        return false;
    }
    return readEntries(manager, stream);
}

/// What refers to a projection of the document means the one that the manager keeps for it, unless an
/// observer has destroyed that meanwhile.
bool TQProjectionArchive::readEntries(TQProjMgr& manager, TQReadStream& stream) {
    std::vector<std::pair<std::int32_t, TQWeakPointer<TQProjection>>> meanings;
    TQProjectionIntake intake(manager, stream.flags());
    std::int32_t count = 0;
    stream.read(count);
    bool areRead = !stream.failed();
    for (; areRead && count > 0; --count) {
        std::int32_t id = 0;
        std::unique_ptr<TQProjection> projection = readEntry(manager, stream, id);
        areRead = projection != nullptr;
        if (areRead) {
            meanings.emplace_back(id, intake.merge(std::move(projection)));
        }
    }
    for (const auto& [id, projection] : meanings) {
        stream.setObjForReference(projection.get(), id);
    }
    return areRead;
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
    constexpr int range = 256; // of a byte, which is signed
    const int unsignedCode = static_cast<unsigned char>(byte);
    const int typeCode = unsignedCode < range / 2 ? unsignedCode : unsignedCode - range;
    if (stream.failed()) {
        return nullptr;
    }
    std::unique_ptr<TQProjection> projection = tq_unarchivedProjectionOfType(typeCode, stream);
    if (projection == nullptr) {
        tq_perrorf("newProjFromStream(TQReadStream *): projection type %d is unknown.\n", typeCode);
        return nullptr;
    }
    if (stream.hasUnknownBlock()) {
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
