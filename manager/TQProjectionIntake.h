#pragma once

#include "projection/TQProjection.h"
#include "support/TQString.h"

#include <cstdint>
#include <memory>

class TQProjMgr;

/// Takes a projection that was just read into a manager: shares the ellipsoid, and decides what happens
/// when the name is taken.
///
/// | old one | new one | definition | old one used | what happens |
/// |---|---|---|---|---|
/// | any | any | the same | any | the new one goes, silently |
/// | user's | user's | another | yes | the new one gets another name, with a panel |
/// | user's | user's | another | no | the new one takes its place, with a panel if announced |
/// | user's | resource | another | any | the new one goes, reported |
/// | resource | user's | another | as user's | as user's; one that takes its place is user-defined |
/// | resource | resource | another | any | the new one goes, with a panel |
///
/// The old one is what the name means, which while a document is read may be a projection that got another
/// name; where the name itself is taken too, the new one gets another name as well.
class TQProjectionIntake {
  public:
    /// @param manager the manager
    /// @param flags TQProjMgr::LoadFlags
    TQProjectionIntake(TQProjMgr& manager, std::uint32_t flags) : _manager(manager), _flags(flags) {}

    /// Takes a projection.
    /// @param projection the projection, not null
    /// @param isResource whether it came with the application
    /// @return whether the manager has it now; if not it is destroyed
    bool take(std::unique_ptr<TQProjection> projection, bool isResource);

  private:
    void shareEllipsoid(TQProjection& projection);
    bool decide(TQProjection& projection, TQProjection& old);
    bool refuseResource(const TQProjection& projection, const TQProjection& old);
    void takePlace(TQProjection& projection, TQProjection& old);
    void takeOtherName(TQProjection& projection, const TQProjection& old);
    void add(std::unique_ptr<TQProjection> projection);
    TQString freeName(const TQString& name) const;

    TQProjMgr& _manager;
    std::uint32_t _flags;
};
