#pragma once

#include "support/TQReadStream.h"
#include "support/TQWriteStream.h"

#include <cstdint>
#include <memory>

class TQProjection;
class TQProjMgr;

/// Writes the projections of a manager to a document and reads them back: the ellipsoids, then the block
/// "TQProjMgr" with an entry for each projection - a reference, the type code, the projection's own block.
class TQProjectionArchive {
  public:
    /// Writes the ellipsoids and projections of a manager. A projection of a class that the factory does not
    /// make is left out, and an ellipsoid of which there is another one of its name; both are reported.
    /// @param manager the manager
    /// @param stream the stream to write to
    /// @param usedOnly true: the projections that observers use, also resources; false: all but resources
    static void write(const TQProjMgr& manager, TQWriteStream& stream, bool usedOnly);

    /// Reads what write() wrote and merges it with what a manager has, see TQProjectionIntake. Stops at the
    /// first projection that cannot be read.
    /// @param manager the manager
    /// @param stream the stream to read from
    /// @return whether all was read
    static bool read(TQProjMgr& manager, TQReadStream& stream);

    /// Writes the entry of a projection.
    /// @param projection the projection, of a class that the factory makes
    /// @param stream the stream to write to
    static void writeEntry(const TQProjection& projection, TQWriteStream& stream);

    /// Reads the entry of a projection; the stream knows it under its reference then.
    /// @param manager the manager that has its ellipsoid
    /// @param stream the stream to read from
    /// @param id receives the number of the reference
    /// @return the projection; null when it cannot be read, which is reported unless bytes are missing
    static std::unique_ptr<TQProjection> readEntry(const TQProjMgr& manager, TQReadStream& stream,
                                                   std::int32_t& id);

  private:
    static bool readEntries(TQProjMgr& manager, TQReadStream& stream);
};
