#include "manager/TQProjMgr.h"

#include "manager/TQBaseNameIndex.h"
#include "manager/TQProjectionArchive.h"
#include "manager/TQProjectionFactory.h"
#include "manager/TQProjectionFile.h"
#include "manager/TQProjectionIntake.h"
#include "proj/TQExternalProjList.h"
#include "support/TQAlertPanel.h"
#include "support/TQDirectory.h"
#include "support/TQLocalizer.h"
#include "support/TQMessages.h"
#include "support/TQPath.h"
#include "support/TQReadMemStream.h"
#include "support/TQSharedDirectory.h"
#include "support/TQWriteMemStream.h"

#include <cstddef>
#include <mutex>
#include <string>
#include <utility>

namespace {

constexpr int projectionBuckets = 50;
constexpr int nameBuckets = 111;
constexpr int listCapacity = 32;
constexpr int growByHalf = -2;

void prepareProcess() {
    static std::once_flag once;
    std::call_once(once, [] {
        TQLocalizer::appShared()->addStringsFromFile(TQString("projMessages"));
        TQExternalProjList::appShared();
    });
}

TQString resourceDirectory(const char* name) {
    return tq_createPath(TQGetApplicationSharedDirectory(), TQString("resProj"), TQString(name));
}

template <class T>
HashTbl<T>& made(std::shared_ptr<HashTbl<T>>& table, int bucketCount) {
    if (!table) {
        table = std::make_shared<HashTbl<T>>(bucketCount);
    }
    return *table;
}

template <class T>
std::unique_ptr<TQArray<TQString>> namesOf(const HashTbl<T>& table) {
    auto names = std::make_unique<TQArray<TQString>>(listCapacity, growByHalf);
    HashState<T> state;
    while (const T* object = table.next(state)) {
        names->add(std::make_unique<TQString>(tq_textOfName(object->name())));
    }
    return names;
}

TQString withoutTrailingReturns(TQString text) {
    const std::string bytes = text.utf8();
    const std::size_t returns = bytes.size() - (bytes.find_last_not_of('\r') + 1);
    text.cutAtIndex(text.length() - static_cast<int>(returns));
    return text;
}

} // namespace

TQProjMgr::TQProjMgr(bool loadResources)
    : _projections(std::make_shared<HashTbl<TQProjection>>(projectionBuckets)),
      _baseNames(std::make_shared<TQBaseNameIndex>()), _ellMgr(std::make_shared<TQEllMgr>()),
      _unregistered(std::make_shared<OwningSlots>()), _retired(std::make_shared<Placeholders>()) {
    prepareProcess();
    if (loadResources) {
        _ellMgr->loadEllipsoidDirectories(resourceDirectory("Ellipsoids"), resourceDirectory("Datum"));
        loadDefaultsFromDirectory();
    }
}

TQProjMgr::TQProjMgr(const TQProjMgr& other) = default;

// Projections point at ellipsoids and go first. The observers, which hear nothing any more, may still ask for
// projections when they go themselves, and find none.
TQProjMgr::~TQProjMgr() {
    _unknownProjections.reset();
    _retired = std::make_shared<Placeholders>();
    _externalProjections.reset();
    _unregistered = std::make_shared<OwningSlots>();
    _projections = std::make_shared<HashTbl<TQProjection>>();
    _ellMgr = std::make_shared<TQEllMgr>();
    _readXREFTable.reset();
    _resourcesPathList.reset();
    _users.clear();
}

// ---- Looking up

TQProjection* TQProjMgr::projWithName(const TQString* name, bool createIfMissing) {
    return name != nullptr ? projWithName(*name, createIfMissing) : nullptr;
}

TQProjection* TQProjMgr::projWithName(const TQString& name, bool createIfMissing) {
    if (TQExternalProjList::isExternalProjectionName(name)) {
        return externalProjection(name);
    }
    TQProjection* known = ownProjection(&name);
    return known != nullptr || !createIfMissing ? known : placeholder(name);
}

/// The own projections that a question is answered true for, in table order, and that live when all have been
/// asked for: an observer may destroy some meanwhile.
std::vector<TQWeakPointer<TQProjection>>
TQProjMgr::ownProjectionsThat(const std::function<bool(const TQProjection&)>& areWanted) const {
    std::vector<TQWeakPointer<TQProjection>> projections;
    HashState<TQProjection> state;
    while (TQProjection* projection = _projections->next(state)) {
        projections.emplace_back(projection);
    }
    std::erase_if(projections, [&areWanted](const auto& projection) {
        return projection.get() == nullptr || !areWanted(*projection.get());
    });
    std::erase_if(projections, [](const auto& projection) { return projection.get() == nullptr; });
    return projections;
}

/// What the names of the document being read mean comes first.
TQProjection* TQProjMgr::ownProjection(const TQString* name) const {
    const auto* const meant = _readXREFTable ? _readXREFTable->lookup(name) : nullptr;
    TQProjection* const projection = meant != nullptr ? meant->get() : nullptr;
    return projection != nullptr ? projection : _projections->lookup(name);
}

/// Lets a name mean a projection while a document is read.
void TQProjMgr::letNameMean(const TQString* name, TQProjection& projection) {
    HashTbl<TQWeakPointer<TQProjection>>& meanings = made(_readXREFTable, nameBuckets);
    meanings.remove(name);
    meanings.add(std::make_unique<TQWeakPointer<TQProjection>>(&projection), name);
}

TQProjection* TQProjMgr::placeholder(const TQString& name) {
    HashTbl<TQDummyProjection>& placeholders = made(_unknownProjections, nameBuckets);
    TQDummyProjection* known = placeholders.lookup(name);
    return known != nullptr ? known : placeholders.add(std::make_unique<TQDummyProjection>(name), name);
}

TQProjection* TQProjMgr::externalProjection(const TQString& name) {
    HashTbl<TQProjection>& externals = made(_externalProjections, projectionBuckets);
    if (TQProjection* known = externals.lookup(name)) {
        return known;
    }
    TQString authority;
    TQString code;
    bool isDeprecated = false;
    if (!TQExternalProjList::authorityAndCodeForExternalProjName(name, authority, code, &isDeprecated)) {
        return nullptr;
    }
    const TQString canonicalName =
        TQExternalProjList::conventionalNameFromAuthAndStringCode(authority, code, isDeprecated);
    if (TQProjection* known = externals.lookup(canonicalName)) {
        return known;
    }
    auto projection =
        TQExternalProjList::newExternalProjectionFromAuthAndStringCode(authority, code, isDeprecated);
    if (!projection->isInvalid()) {
        return externals.add(std::move(projection), canonicalName);
    }
    std::erase_if(*_unregistered, [](const auto& slot) { return slot.isEmpty(); });
    TQProjection* const unregistered = projection.get();
    _unregistered->emplace_back(std::move(projection));
    return unregistered;
}

void TQProjMgr::disposeOfUnregistered(TQProjection* projection) {
    std::erase_if(*_unregistered, [projection](const auto& slot) { return slot.owns(projection); });
}

std::unique_ptr<TQArray<TQString>> TQProjMgr::newListOfProjNames() const {
    auto names = namesOf(*_projections);
    names->sort(&TQString::compareAscendingAsString);
    return names;
}

std::unique_ptr<TQArray<TQString>> TQProjMgr::newListOfEllipsoidNames() const {
    return namesOf(_ellMgr->ellipsoids());
}

TQProjection* TQProjMgr::traverseUserProjs(HashState<TQProjection>* state) const {
    HashState<TQProjection> fromTheStart;
    return _projections->next(state != nullptr ? *state : fromTheStart);
}

// ---- Observers

void TQProjMgr::registerUser(std::unique_ptr<TQProjNotificationUser> user, bool replace) {
    if (replace && user != nullptr) {
        unregisterUser(user->owner());
    }
    _users.add(std::move(user));
}

void TQProjMgr::unregisterUser(const void* owner) { _users.removeFirstOf(owner); }

bool TQProjMgr::isProjectionUsed(const TQProjection* projection) const { return _users.use(projection); }

bool TQProjMgr::willDeleteProjection(const TQProjection* projection) const {
    return !isProjectionUsed(projection);
}

// ---- Removing

void TQProjMgr::destroy(const TQString& name) { destroy(_projections->lookup(name)); }

/// Destroys an own projection; its name may have changed, or another may have it.
void TQProjMgr::destroy(TQProjection* projection) {
    unregistered(projection).reset();
    _users.tellChange();
}

void TQProjMgr::cleanNoResourcesUnusedProj() {
    const auto removable = ownProjectionsThat([this](const TQProjection& projection) {
        return !projection.isResource() && !isProjectionUsed(&projection);
    });
    for (const TQWeakPointer<TQProjection>& removed : removable) {
        if (TQProjection* projection = removed.get()) { // an observer may have destroyed it
            destroy(projection);
        }
    }
}

void TQProjMgr::reinitReadXREFTable() { _readXREFTable.reset(); }

// ---- Placeholders

bool TQProjMgr::checkAndResetUnknowProjection(bool /*unused*/) {
    reinitReadXREFTable();
    resolvePlaceholders(); // what was registered meanwhile is not missing
    while (_unknownProjections && _unknownProjections->count() > 0) {
        if (!userWantsToLookAgain()) {
            return false;
        }
        loadDefaultsFromDirectory();
        resolvePlaceholders();
    }
    return true;
}

/// Shows which projections are missing; in batch mode nobody looks again.
bool TQProjMgr::userWantsToLookAgain() const {
    const char* key = _unknownProjections->count() < 2 ? "missingProjection" : "missingProjections";
    TQString message = TQLocalizer::appLocalizedStringForKey(TQString(key));
    HashState<TQDummyProjection> state;
    const TQString* name = nullptr;
    while (_unknownProjections->next(state, name) != nullptr) {
        message.append("\n");
        message.append(*name);
    }
    return TQRunAlertPanelWithAlternateInBatchMode(u"Warning", message.wideBuffer(), u"OK", u"Cancel", u"") !=
           TQAlertAlternate;
}

/// Puts the projections that are there now in the place of their placeholders.
void TQProjMgr::resolvePlaceholders() {
    if (!_unknownProjections) {
        return;
    }
    struct Pair {
        TQDummyProjection* placeholder;
        TQWeakPointer<TQProjection> found; // which an observer may destroy before another one is told
    };
    std::vector<Pair> resolved;
    HashState<TQDummyProjection> state;
    const TQString* name = nullptr;
    while (TQDummyProjection* placeholder = _unknownProjections->next(state, name)) {
        if (TQProjection* found = ownProjection(name)) {
            resolved.push_back({placeholder, TQWeakPointer(found)});
        }
    }
    for (const Pair& pair : resolved) {
        _retired->push_back(_unknownProjections->unlink(pair.placeholder));
    }
    for (const Pair& pair : resolved) {
        _users.tellReplacement(pair.placeholder, pair.found);
    }
}

// ---- Files

TQString TQProjMgr::defaultProjDirectory() const { return resourceDirectory("Projection"); }

const TQString* TQProjMgr::resourcePath(const TQString& name) const {
    return _resourcesPathList ? _resourcesPathList->lookup(name) : nullptr;
}

void TQProjMgr::removeResourceProjnameInResourcesPathList(const TQString& name) {
    if (_resourcesPathList) {
        _resourcesPathList->remove(name);
    }
}

void TQProjMgr::registerProjection(std::unique_ptr<TQProjection> projection) {
    _baseNames->add(*projection);
    const TQString* const name = projection->name();
    _projections->add(std::move(projection), name);
    _users.tellChange();
}

void TQProjMgr::rememberPath(const TQString& name, const TQString& path) {
    removeResourceProjnameInResourcesPathList(name);
    made(_resourcesPathList, nameBuckets).add(std::make_unique<TQString>(path), name);
}

std::unique_ptr<TQProjection> TQProjMgr::createProjectionFromPath(const TQString& path) {
    return TQProjectionFile::createProjectionFromPath(path);
}

bool TQProjMgr::loadProjection(const TQString& path, bool isResource, std::uint32_t flags) {
    return addLoadedProjection(createProjectionFromPath(path), isResource, flags, &path);
}

void TQProjMgr::loadProjectionFromDirectory(const TQString& directory, bool isResource, std::uint32_t flags) {
    for (const TQString& name : TQOpenDir(directory, TQString("proj"))) {
        loadProjection(tq_createPath(directory, name), isResource, flags);
    }
}

void TQProjMgr::loadResourceDirectory(const TQString& directory) {
    constexpr bool isResource = true;
    constexpr std::uint32_t noFlags = 0;
    loadProjectionFromDirectory(directory, isResource, noFlags);
}

void TQProjMgr::loadDefaultsFromDirectory() { loadResourceDirectory(defaultProjDirectory()); }

bool TQProjMgr::addLoadedProjection(std::unique_ptr<TQProjection> projection, bool isResource,
                                    std::uint32_t flags, const TQString* path) {
    if (projection == nullptr) {
        return false;
    }
    constexpr std::uint32_t flagsOfFiles = Silent | AnnounceReplacements;
    return TQProjectionIntake(*this, flags & flagsOfFiles).take(std::move(projection), isResource, path);
}

void TQProjMgr::saveProjection(const TQString& name, const TQString& path) {
    TQProjection* const projection = projWithName(name, false);
    if (projection == nullptr) {
        return;
    }
    std::error_code reason; // nobody asks
    save(*projection, name, path, reason);
    disposeOfUnregistered(projection);
}

bool TQProjMgr::save(TQProjection& projection, const TQString& name, const TQString& path,
                     std::error_code& reason) {
    const bool isWritten = TQProjectionFile::write(projection, path, reason);
    if (isWritten && tq_pathIsEqual(tq_pathDirPart(path), defaultProjDirectory())) {
        projection.setIsResource(true);
        projection.setIsUserDefined(false);
        rememberPath(name, path);
    }
    return isWritten;
}

// ---- Documents

void TQProjMgr::archiveTo(TQWriteStream* stream) const {
    constexpr bool usedOnly = false;
    archiveTo(stream, usedOnly);
}

void TQProjMgr::archiveTo(TQWriteStream* stream, bool usedOnly) const {
    TQProjectionArchive::write(*this, *stream, usedOnly);
}

void TQProjMgr::unarchiveFrom(TQReadStream* stream) {
    constexpr bool unused = false;
    unarchiveFrom(stream, unused);
}

bool TQProjMgr::unarchiveFrom(TQReadStream* stream, bool /*unused*/) {
    reinitReadXREFTable();
    return TQProjectionArchive::read(*this, *stream);
}

std::unique_ptr<TQProjection> TQProjMgr::newProjFromStream(TQReadStream* stream) const {
    std::int32_t id = 0;
    return TQProjectionArchive::readEntry(*this, *stream, id);
}

bool TQProjMgr::awakeOneProjection(TQProjection& projection) const {
    const std::unique_ptr<TQString> pending = projection.takePendingEllipsoidName();
    if (pending == nullptr) {
        return true;
    }
    const TQString name = withoutTrailingReturns(*pending);
    TQEllipsoid* const ellipsoid = name.isEmpty() ? nullptr : _ellMgr->ellipsoidWithName(name);
    tq_attachEllipsoid(projection, ellipsoid);
    if (ellipsoid == nullptr && !name.isEmpty()) {
        tq_perrorf("TQProjMgr::awakeOneProjection(): could not find ellipsoid named %s\n", name);
        return false;
    }
    return true;
}

/// Lets the projections compute anew what they derive from ellipsoids that got other axes.
void TQProjMgr::followEllipsoids(const TQEllMgr::Changed& changed) const {
    const auto affected = ownProjectionsThat(
        [&changed](const TQProjection& projection) { return changed.contains(projection.ellipsoid()); });
    for (const TQWeakPointer<TQProjection>& projection : affected) {
        if (TQProjection* const present = projection.get()) {
            tq_attachEllipsoid(*present, present->ellipsoid());
        }
    }
}

bool TQProjMgr::archiveNecessaryProj(const TQString& directory) {
    std::error_code reason;
    return archiveNecessaryProj(directory, reason);
}

bool TQProjMgr::archiveNecessaryProj(const TQString& directory, std::error_code& reason) {
    const auto necessary = ownProjectionsThat([this](const TQProjection& projection) {
        return !projection.isResource() || isProjectionUsed(&projection);
    });
    if (!necessary.empty()) {
        tq_mkdir(directory); // writing shows whether it is there
    }
    const TQString extension("proj");
    TQUniqueFileNames fileNames(directory);
    bool areWritten = true;
    reason.clear();
    for (const TQWeakPointer<TQProjection>& wanted : necessary) {
        TQProjection* const projection = wanted.get();
        if (projection == nullptr) {
            continue; // whoever heard of a failure before has destroyed it
        }
        const TQString name = tq_textOfName(projection->name());
        const TQString path = tq_createFilePath(directory, fileNames.take(name, extension), extension);
        std::error_code reasonOfThis;
        areWritten = save(*projection, name, path, reasonOfThis) && areWritten;
        reason = reason ? reason : reasonOfThis;
    }
    return areWritten;
}

TQProjection* TQProjMgr::getProjectionWithNameFromGeorefMgr(TQProjection* projection, TQProjMgr* source) {
    if (projection == nullptr) {
        return nullptr;
    }
    reinitReadXREFTable();
    TQProjection* const known = projWithName(projection->name(), false);
    if (known != nullptr || source == nullptr) {
        return known;
    }
    std::unique_ptr<TQProjection> copy = source->copyForOther(*projection);
    if (copy == nullptr) {
        return nullptr;
    }
    const TQWeakPointer<TQProjection> adopted(copy.get());
    constexpr bool isResource = false;
    constexpr std::uint32_t noFlags = 0;
    addLoadedProjection(std::move(copy), isResource, noFlags, nullptr);
    return adopted.get();
}

/// A copy of a projection with an ellipsoid of its own, made by way of its archive, which finds the ellipsoid
/// by its name; that of a system of PROJ's is the projection's alone. Null for a projection without a type
/// code.
std::unique_ptr<TQProjection> TQProjMgr::copyForOther(const TQProjection& projection) const {
    const TQEllipsoid* const ellipsoid = projection.ellipsoid();
    const bool isOfPROJ = ellipsoid != nullptr &&
                          TQExternalProjList::isExternalProjectionName(tq_textOfName(ellipsoid->name()));
    TQWriteMemStream written;
    TQProjectionArchive::writeEntry(projection, written);
    TQReadMemStream stream(written.getMemory().data(), written.getMemory().size());
    std::unique_ptr<TQProjection> copy = isOfPROJ ? tq_copyOf(projection) : newProjFromStream(&stream);
    if (copy != nullptr && copy->ellipsoid() != nullptr) {
        copy->setOwnEllipsoid(tq_copyOf(*copy->ellipsoid()));
    }
    return copy;
}

// ---- Parameter tables

TQProjection* TQProjMgr::createProjFromParams(HashTbl<TQProjParam>* params) {
    const TQProjParam* const type = params != nullptr ? params->lookup("Type") : nullptr;
    std::unique_ptr<TQProjection> projection =
        type != nullptr ? tq_newProjectionOfType(type->intValue()) : nullptr;
    if (projection == nullptr) {
        return nullptr;
    }
    takeParams(*projection, *params);
    projection->setIsResource(false);
    projection->setIsUserDefined(false);
    const TQWeakPointer<TQProjection> created(projection.get());
    registerProjection(std::move(projection));
    return created.get();
}

/// Gives a projection the ellipsoid and the parameters of a table, those that it holds.
void TQProjMgr::takeParams(TQProjection& projection, const HashTbl<TQProjParam>& params) const {
    if (const TQProjParam* const ellipsoid = params.lookup("Ellipsoide")) {
        const TQString* const name = ellipsoid->stringValue();
        tq_attachEllipsoid(projection, name != nullptr ? _ellMgr->ellipsoidWithName(*name) : nullptr);
    }
    tq_takeParams(projection, params);
}

void TQProjMgr::modifyProjFromParams(TQProjection* projection, HashTbl<TQProjParam>* params) {
    if (projection == nullptr || params == nullptr || params->count() == 0) {
        return;
    }
    if (projection->isResource()) {
        const std::unique_ptr<TQProjection> scratch = tq_newProjectionOfType(projection->projectionType());
        if (scratch != nullptr) {
            takeParams(*scratch, *params);
            if (projection->hasSameDefinition(*scratch)) {
                return;
            }
        }
    }
    std::unique_ptr<TQProjection> modified = unregistered(projection);
    if (modified == nullptr && _externalProjections) {
        modified = _externalProjections->unlink(projection);
    }
    if (modified == nullptr) {
        return;
    }
    takeParams(*modified, *params);
    modified->setIsResource(false);
    modified->setIsUserDefined(false);
    registerProjection(std::move(modified));
}

/// Takes an own projection out of its table; null when it is none.
std::unique_ptr<TQProjection> TQProjMgr::unregistered(TQProjection* projection) {
    if (projection == nullptr) {
        return nullptr;
    }
    if (_projections->lookup(projection->name()) == projection) {
        _baseNames->noteFree(tq_textOfName(projection->name()));
    } else {
        _baseNames->forgetNumbers(); // it was renamed since, or is one of several of its name
    }
    return _projections->unlink(projection);
}
