#pragma once

#include "projection/TQProjection.h"
#include "support/TQString.h"
#include "support/TQWeakPointer.h"

#include <cstdint>
#include <memory>
#include <unordered_map>

class TQProjMgr;

/// Takes a projection that was just read into a manager: shares the ellipsoid, and decides what happens
/// when the name is taken. Of a file:
///
/// | old one | new one | definition | old one used | what happens |
/// |---|---|---|---|---|
/// | any | any | the same | any | the new one goes, silently |
/// | user's | user's | another | yes | the new one gets another name, with a panel |
/// | user's | user's | another | no | the new one takes its place, with a panel if announced |
/// | user's | resource | another | any | the new one goes, reported in any case |
/// | resource | user's | another | as user's | as user's; one that takes its place is user-defined |
/// | resource | resource | another | any | the new one goes, with a panel |
///
/// The old one is what the name means, which while a document is read may be a projection that got another
/// name; where the name itself is taken too, the new one gets another name as well. Observers and panels may
/// load and destroy projections meanwhile: where they have taken the name, the new one gets another one, too.
class TQProjectionIntake {
  public:
    /// @param manager the manager
    /// @param flags TQProjMgr::LoadFlags
    TQProjectionIntake(TQProjMgr& manager, std::uint32_t flags) : _manager(manager), _flags(flags) {}

    /// Takes a projection.
    /// @param projection the projection, not null
    /// @param isResource whether it came with the application
    /// @param path the file that it came from, kept for resources; or null
    /// @return whether the manager has it now; if not it is destroyed
    bool take(std::unique_ptr<TQProjection> projection, bool isResource, const TQString* path);

    /// Merges a projection that was read from a document, which is the user's whatever it was there:
    ///
    /// | definition | flags | old one used | what happens |
    /// |---|---|---|---|
    /// | the same, perhaps under another number | any | any | the new one goes, its name means the old one |
    /// | another | KeepPresent | any | the new one goes, with a panel if announced |
    /// | another | ReplaceInObservers | yes | the new one takes its place, also in observers |
    /// | another | others | yes | the new one gets another name, with a panel |
    /// | another | others | no | the new one takes its place, with a panel if announced |
    ///
    /// A projection with which this object has merged one of the same document is in use by it: the new one
    /// gets another name.
    ///
    /// @param projection the projection, not null
    /// @return the projection that the manager has for it
    TQWeakPointer<TQProjection> merge(std::unique_ptr<TQProjection> projection);

  private:
    std::unique_ptr<TQEllipsoid> shareEllipsoid(TQProjection& projection);
    TQProjection* namesake(const TQProjection& projection) const;
    bool decide(TQProjection& projection, const TQWeakPointer<TQProjection>& old);
    TQWeakPointer<TQProjection> mergeInto(std::unique_ptr<TQProjection> projection);
    TQWeakPointer<TQProjection> keep(TQProjection& present, const TQProjection& projection);
    bool isNeeded(const TQProjection* projection) const;
    TQProjection* sameDefinition(const TQProjection& projection) const;
    void makeRoom(TQProjection& projection, const TQWeakPointer<TQProjection>& old);
    void switchObservers(TQProjection& projection, const TQWeakPointer<TQProjection>& old);
    bool refuseResource(const TQProjection& projection, const TQProjection& old);
    void takePlace(TQProjection& projection, const TQWeakPointer<TQProjection>& old);
    void takeOtherName(TQProjection& projection, const TQProjection& old);
    void add(std::unique_ptr<TQProjection> projection, const TQString* path);
    TQString freeName(const TQString& name) const;

    TQProjMgr& _manager;
    std::uint32_t _flags;
    std::unordered_map<const TQProjection*, TQWeakPointer<TQProjection>>
        _needed; // by the document being read
};
