#include "manager/TQProjectionIntake.h"

#include "manager/TQProjMgr.h"
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

/// What a panel says of the old projection.
const char* differenceFrom(const TQProjection& old) {
    return old.isResource() ? "projectionDifferentFromResource_userDef_extra"
                            : "projectionDifferentFromResource_userDef_non_resource";
}

TQString localized(const char* key) { return TQLocalizer::appLocalizedStringForKey(TQString(key)); }

/// Tells the user of two projections of one name.
/// @param newName what the new projection is called now, or empty
void showPanel(const char* beginningKey, const TQString& name, const TQProjection& old,
               const char* decisionKey, const TQString& newName = TQString()) {
    TQString message;
    for (const TQString& piece : {localized(beginningKey), name, localized(differenceFrom(old)),
                                  TQString("\n"), localized(decisionKey), newName}) {
        message.append(piece);
    }
    TQRunAlertPanelWithDefaultInBatchMode(u"Warning", message.wideBuffer(), u"Ok", u"", u"");
}

TQString nameOf(const TQProjection& projection) {
    return projection.name() != nullptr ? *projection.name() : TQString();
}

bool isOfPROJ(const TQEllipsoid& ellipsoid) {
    return ellipsoid.name() != nullptr && ellipsoid.name()->characterAt(0) == U'\t';
}

} // namespace

bool TQProjectionIntake::take(std::unique_ptr<TQProjection> projection, bool isResource) {
    shareEllipsoid(*projection);
    projection->setRegistrationState(1);
    projection->setIsResource(isResource);
    projection->setIsUserDefined(false);
    TQProjection* const old = _manager.projWithName(nameOf(*projection), false);
    const bool isTaken = old == nullptr || decide(*projection, *old);
    if (isTaken) {
        add(std::move(projection));
    }
    _manager.disposeOfUnregistered(old);
    return isTaken;
}

/// Gives a projection the registered ellipsoid of the name of its own. An ellipsoid of PROJ's stays its own.
void TQProjectionIntake::shareEllipsoid(TQProjection& projection) {
    const TQEllipsoid* const own = projection.ellipsoid();
    if (own == nullptr || isOfPROJ(*own)) {
        return;
    }
    if (TQEllipsoid* registered = _manager.ellipsoidManager().ellipsoidWithName(own->name())) {
        const std::unique_ptr<TQEllipsoid> replaced = projection.releaseOwnedEllipsoid();
        projection.setEllipsoid(registered);
    }
}

/// Whether a projection is added whose name another one has; makes room for it.
bool TQProjectionIntake::decide(TQProjection& projection, TQProjection& old) {
    if (old.hasSameDefinition(projection)) {
        return false;
    }
    if (projection.isResource()) {
        return refuseResource(projection, old);
    }
    if (_manager.isProjectionUsed(&old)) {
        takeOtherName(projection, old);
    } else {
        takePlace(projection, old);
    }
    return true;
}

/// Resources are loaded first: the first one of a name counts, and none counts after one of a user.
bool TQProjectionIntake::refuseResource(const TQProjection& projection, const TQProjection& old) {
    if (!old.isResource()) {
        tq_perror(
            "TQProjMgr::loadProjection(...): impossible to load resources proj after a non resources !!!\n");
    } else if ((_flags & TQProjMgr::Silent) == 0) {
        showPanel(beginningForResource, nameOf(projection), old, oldKept);
    }
    return false;
}

void TQProjectionIntake::takePlace(TQProjection& projection, TQProjection& old) {
    if ((_flags & TQProjMgr::AnnounceReplacements) != 0) {
        showPanel(beginning, nameOf(projection), old, newKept);
    }
    const bool wasResource = old.isResource();
    _manager.destroy(&old);
    // The old one may have been what the name means while a document is read, under another name of its own.
    if (const TQProjection* namesake = _manager._projections->lookup(nameOf(projection))) {
        takeOtherName(projection, *namesake);
    } else {
        projection.setIsUserDefined(wasResource);
    }
}

void TQProjectionIntake::takeOtherName(TQProjection& projection, const TQProjection& old) {
    const TQString requestedName = nameOf(projection);
    projection.rename(freeName(requestedName));
    if (!_manager._readXREFTable) {
        constexpr int bucketCount = 111;
        _manager._readXREFTable = std::make_shared<TQStrHashTbl>(bucketCount);
    }
    _manager._readXREFTable->add(&projection, requestedName);
    if ((_flags & TQProjMgr::Silent) == 0) {
        showPanel(beginning, requestedName, old, renamed, *projection.name());
    }
}

TQString TQProjectionIntake::freeName(const TQString& name) const {
    TQString candidate = name;
    for (int number = 1; candidate == name || _manager._projections->lookup(candidate) != nullptr; ++number) {
        candidate = name;
        candidate.appendWithFormat("_%d", number);
    }
    return candidate;
}

/// The manager owns a projection and its ellipsoid from here on; one that belongs to somebody else is copied.
void TQProjectionIntake::add(std::unique_ptr<TQProjection> projection) {
    const TQEllipsoid* const ellipsoid = projection->ellipsoid();
    TQEllMgr& ellipsoids = _manager.ellipsoidManager();
    if (ellipsoid != nullptr && !isOfPROJ(*ellipsoid) &&
        ellipsoids.ellipsoidWithName(ellipsoid->name()) != ellipsoid) {
        std::unique_ptr<TQEllipsoid> own = projection->releaseOwnedEllipsoid();
        if (own != nullptr) {
            ellipsoids.addEllipsoid(std::move(own));
        } else {
            projection->setEllipsoid(ellipsoids.addEllipsoid(tq_copyOf(*ellipsoid)));
        }
    }
    const TQString* const name = projection->name();
    _manager._projections->add(std::move(projection), name);
    _manager._users.tellChange();
}
