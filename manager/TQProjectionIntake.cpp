#include "manager/TQProjectionIntake.h"

#include "manager/TQBaseNameIndex.h"
#include "manager/TQProjMgr.h"
#include "manager/TQProjectionFactory.h"
#include "proj/TQExternalProjList.h"
#include "support/TQAlertPanel.h"
#include "support/TQLocalizer.h"
#include "support/TQMessages.h"

#include <initializer_list>
#include <utility>

namespace {

constexpr const char* beginning = "projectionDifferentFromResource_beg";
constexpr const char* beginningForResource = "projectionDifferentFromResource_beg_userDef";
constexpr const char* renamed = "projectionDifferentFromResource_userDef_renameNewAs";
constexpr const char* newKept = "projectionDifferentFromResource_userDef_keepNew";
constexpr const char* oldKept = "projectionDifferentFromResource_userDef_keepOld";

constexpr const char* differentFromResource = "projectionDifferentFromResource_userDef_extra";
constexpr const char* differentFromUsers = "projectionDifferentFromResource_userDef_non_resource";

/// What a panel says of the old projection.
const char* differenceFrom(const TQProjection& old) {
    return old.isResource() ? differentFromResource : differentFromUsers;
}

TQString localized(const char* key) { return TQLocalizer::appLocalizedStringForKey(TQString(key)); }

/// Tells the user of two projections of one name.
/// @param newName what the new projection is called now, or empty
void showPanel(const char* beginningKey, const TQString& name, const char* differenceKey,
               const char* decisionKey, const TQString& newName = TQString()) {
    TQString message;
    for (const TQString& piece : {localized(beginningKey), name, localized(differenceKey), TQString("\n"),
                                  localized(decisionKey), newName}) {
        message.append(piece);
    }
    TQRunAlertPanelWithDefaultInBatchMode(u"Warning", message.wideBuffer(), u"Ok", u"", u"");
}

bool isOfPROJ(const TQEllipsoid& ellipsoid) {
    return TQExternalProjList::isExternalProjectionName(tq_textOfName(ellipsoid.name()));
}

} // namespace

bool TQProjectionIntake::take(std::unique_ptr<TQProjection> projection, bool isResource,
                              const TQString* path) {
    constexpr int registered = 1;
    shareEllipsoid(*projection);
    projection->setRegistrationState(registered);
    projection->setIsResource(isResource);
    projection->setIsUserDefined(false);
    const TQWeakPointer<TQProjection> old(namesake(*projection));
    const bool isTaken = old.get() == nullptr || decide(*projection, old);
    if (isTaken) {
        add(std::move(projection), isResource ? path : nullptr);
    }
    _manager.disposeOfUnregistered(old.get());
    return isTaken;
}

/// What the name of a projection means: one of the manager's own, or else an external one.
TQProjection* TQProjectionIntake::namesake(const TQProjection& projection) const {
    TQProjection* const own = _manager.ownProjection(projection.name());
    return own != nullptr ? own : _manager.projWithName(projection.name(), false);
}

/// Gives a projection the registered ellipsoid of the name of its own. An ellipsoid of PROJ's stays its own.
/// @return the ellipsoid that it owned and does without now, or null
std::unique_ptr<TQEllipsoid> TQProjectionIntake::shareEllipsoid(TQProjection& projection) {
    const TQEllipsoid* const own = projection.ellipsoid();
    if (own == nullptr || isOfPROJ(*own)) {
        return nullptr;
    }
    TQEllipsoid* const registered = _manager.ellipsoidManager().ellipsoidWithName(own->name());
    if (registered == nullptr || registered == own) {
        return nullptr;
    }
    std::unique_ptr<TQEllipsoid> replaced = projection.releaseOwnedEllipsoid();
    tq_attachEllipsoid(projection, registered);
    return replaced;
}

/// Whether a projection is added whose name means another one; makes room for it.
bool TQProjectionIntake::decide(TQProjection& projection, const TQWeakPointer<TQProjection>& old) {
    if (old.get()->hasSameDefinition(projection)) {
        return false;
    }
    if (projection.isResource()) {
        return refuseResource(projection, *old.get());
    }
    makeRoom(projection, old);
    return true;
}

TQWeakPointer<TQProjection> TQProjectionIntake::merge(std::unique_ptr<TQProjection> projection) {
    TQWeakPointer<TQProjection> merged = mergeInto(std::move(projection));
    if (const TQProjection* const kept = merged.get()) {
        _needed[kept] = merged;
    }
    return merged;
}

TQWeakPointer<TQProjection> TQProjectionIntake::mergeInto(std::unique_ptr<TQProjection> projection) {
    projection->setIsResource(false);
    projection->setIsUserDefined(false);
    if (TQProjection* const same = sameDefinition(*projection)) {
        return keep(*same, *projection);
    }
    const TQWeakPointer<TQProjection> present(_manager._projections->lookup(projection->name()));
    if (present.get() != nullptr && (_flags & TQProjMgr::KeepPresent) != 0) {
        if ((_flags & TQProjMgr::AnnounceReplacements) != 0) {
            showPanel(beginning, tq_textOfName(projection->name()), differentFromResource, oldKept);
        }
        if (TQProjection* const kept = _manager._projections->lookup(projection->name())) {
            return keep(*kept, *projection);
        }
    } else if (present.get() != nullptr) {
        makeRoom(*projection, present);
    }
    TQWeakPointer<TQProjection> added(projection.get());
    add(std::move(projection), nullptr);
    return added;
}

/// Lets the name of a projection that goes mean the one that stays.
TQWeakPointer<TQProjection> TQProjectionIntake::keep(TQProjection& present, const TQProjection& projection) {
    if (!tq_namesAreEqual(present.name(), projection.name())) {
        _manager.letNameMean(projection.name(), present);
    }
    return TQWeakPointer(&present);
}

/// Whether a document's projection was merged with a projection before, so that the document will use it.
bool TQProjectionIntake::isNeeded(const TQProjection* projection) const {
    const auto found = _needed.find(projection);
    return found != _needed.end() && found->second.get() == projection;
}

/// The projection of the manager that is a document's: of its name, or of one that it had to take once.
TQProjection* TQProjectionIntake::sameDefinition(const TQProjection& projection) const {
    TQProjection* const namesake = _manager._projections->lookup(projection.name());
    const bool isSame = namesake != nullptr && namesake->hasSameDefinition(projection);
    return isSame ? namesake : _manager._baseNames->sameDefinition(projection);
}

/// Makes room for a projection whose name means another one.
void TQProjectionIntake::makeRoom(TQProjection& projection, const TQWeakPointer<TQProjection>& old) {
    const bool isUsed = _manager.isProjectionUsed(old.get());
    if (old.get() == nullptr) {
        return; // an observer has destroyed it
    }
    const bool isSwitched = isUsed && (_flags & TQProjMgr::ReplaceInObservers) != 0;
    if (isNeeded(old.get()) || (isUsed && !isSwitched)) {
        takeOtherName(projection, *old.get());
    } else if (isSwitched) {
        switchObservers(projection, old);
    } else {
        takePlace(projection, old);
    }
}

/// Puts a projection in the place of one that is in use.
void TQProjectionIntake::switchObservers(TQProjection& projection, const TQWeakPointer<TQProjection>& old) {
    projection.setIsUserDefined(old.get()->isResource() || old.get()->isUserDefined());
    _manager._users.tellReplacement(old.get(), TQWeakPointer(&projection));
    if (TQProjection* const replaced = old.get()) {
        _manager.destroy(replaced);
    }
}

/// Resources are loaded first: the first one of a name counts, and none counts after one of a user.
bool TQProjectionIntake::refuseResource(const TQProjection& projection, const TQProjection& old) {
    if (!old.isResource()) {
        tq_perror(
            "TQProjMgr::loadProjection(...): impossible to load resources proj after a non resources !!!\n");
    } else if ((_flags & TQProjMgr::Silent) == 0) {
        showPanel(beginningForResource, tq_textOfName(projection.name()), differentFromResource, oldKept);
    }
    return false;
}

/// While a document is read the old one may be what the name means under another name of its own: if the name
/// itself is taken too, the new one will get another name as well.
void TQProjectionIntake::takePlace(TQProjection& projection, const TQWeakPointer<TQProjection>& old) {
    const TQProjection* const owner = _manager._projections->lookup(projection.name());
    if (owner == nullptr || owner == old.get()) {
        projection.setIsUserDefined(old.get()->isResource());
        if ((_flags & TQProjMgr::AnnounceReplacements) != 0) {
            showPanel(beginning, tq_textOfName(projection.name()), differenceFrom(*old.get()), newKept);
        }
    }
    if (TQProjection* const present = old.get()) { // which the application may destroy under a panel
        _manager.destroy(present);
    }
}

void TQProjectionIntake::takeOtherName(TQProjection& projection, const TQProjection& old) {
    const TQString requestedName = tq_textOfName(projection.name());
    projection.setIsUserDefined(false); // it stands in for nobody
    _manager.letNameMean(projection.name(), projection);
    projection.rename(freeName(requestedName));
    if ((_flags & TQProjMgr::Silent) == 0) {
        showPanel(beginning, requestedName, differenceFrom(old), renamed, *projection.name());
        projection.rename(freeName(requestedName)); // the application may load others under a panel
    }
}

TQString TQProjectionIntake::freeName(const TQString& name) const {
    for (int& number = _manager._baseNames->firstNumber(name);; ++number) {
        TQString candidate = name;
        candidate.appendWithFormat("_%d", number);
        if (_manager._projections->lookup(candidate) == nullptr) {
            return candidate;
        }
    }
}

/// The manager owns a projection and its ellipsoid from here on; one that belongs to somebody else is copied.
/// Observers and panels may have loaded others meanwhile, so that its name and its ellipsoid are looked up
/// again.
void TQProjectionIntake::add(std::unique_ptr<TQProjection> projection, const TQString* path) {
    if (const TQProjection* const namesake = _manager._projections->lookup(projection->name())) {
        takeOtherName(*projection, *namesake);
    }
    const std::unique_ptr<TQEllipsoid> replaced = shareEllipsoid(*projection); // goes when all is done
    const TQEllipsoid* const ellipsoid = projection->ellipsoid();
    TQEllMgr& ellipsoids = _manager.ellipsoidManager();
    if (ellipsoid != nullptr && !isOfPROJ(*ellipsoid) &&
        ellipsoids.ellipsoidWithName(ellipsoid->name()) != ellipsoid) {
        std::unique_ptr<TQEllipsoid> own = projection->releaseOwnedEllipsoid();
        if (own != nullptr) {
            ellipsoids.addEllipsoid(std::move(own));
        } else {
            tq_attachEllipsoid(*projection, ellipsoids.addEllipsoid(tq_copyOf(*ellipsoid)));
        }
    }
    if (path != nullptr) {
        _manager.rememberPath(tq_textOfName(projection->name()), *path);
    }
    _manager.registerProjection(std::move(projection));
}
