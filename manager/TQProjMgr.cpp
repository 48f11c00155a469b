#include "manager/TQProjMgr.h"

#include "manager/TQProjectionFile.h"
#include "manager/TQProjectionIntake.h"
#include "proj/TQExternalProjList.h"
#include "support/TQAlertPanel.h"
#include "support/TQDirectory.h"
#include "support/TQLocalizer.h"
#include "support/TQPath.h"
#include "support/TQSharedDirectory.h"

#include <mutex>
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

} // namespace

TQProjMgr::TQProjMgr(bool loadResources)
    : _projections(std::make_shared<HashTbl<TQProjection>>(projectionBuckets)),
      _ellMgr(std::make_shared<TQEllMgr>()), _unregistered(std::make_shared<OwningSlots>()),
      _retired(std::make_shared<Placeholders>()) {
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
    return known != nullptr ? known : placeholders.add(std::make_unique<TQDummyProjection>(), name);
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
    _projections->unlink(projection).reset();
    _users.tellChange();
}

void TQProjMgr::cleanNoResourcesUnusedProj() {
    std::vector<TQWeakPointer<TQProjection>> removable;
    HashState<TQProjection> state;
    while (TQProjection* projection = _projections->next(state)) {
        if (!projection->isResource() && !isProjectionUsed(projection)) {
            removable.emplace_back(projection);
        }
    }
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
    return TQProjectionIntake(*this, flags).take(std::move(projection), isResource, path);
}

void TQProjMgr::saveProjection(const TQString& name, const TQString& path) {
    TQProjection* const projection = projWithName(name, false);
    if (projection == nullptr) {
        return;
    }
    const bool isWritten = TQProjectionFile::write(*projection, path);
    if (isWritten && tq_pathIsEqual(tq_pathDirPart(path), defaultProjDirectory())) {
        projection->setIsResource(true);
        projection->setIsUserDefined(false);
        rememberPath(name, path);
    }
    disposeOfUnregistered(projection);
}
