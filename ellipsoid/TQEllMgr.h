#pragma once

#include "TQProjectionExport.h"

#include "ellipsoid/TQEllipsoid.h"
#include "support/HashTbl.h"
#include "support/TQIdentity.h"
#include "support/TQObject.h"
#include "support/TQString.h"

#include <memory>
#include <unordered_set>
#include <vector>

/// The registry of ellipsoids by name. Projections point at ellipsoids that it owns.
///
/// An ellipsoid that another one takes the place of is no longer found, but lives on until the registry is
/// destroyed, as projections may point at it.
class TQPROJECTION_EXPORT TQEllMgr : public TQObject {
    TQ_IDENTITY(TQEllMgr, TQObject)

  public:
    /// What unarchiveFrom() answers.
    enum Code : int {
        AllRead = 100, ///< every ellipsoid was read, or there was none
        NotRead = 102  ///< another version, or the stream ended early
    };

    /// A registry without ellipsoids.
    TQEllMgr();

    /// A registry with copies of the other one's ellipsoids.
    /// @param other the registry to copy
    TQEllMgr(const TQEllMgr& other);
    TQEllMgr& operator=(const TQEllMgr&) = delete;
    ~TQEllMgr() override;

    /// Registers an ellipsoid in place of the one of the same name.
    /// @param ellipsoid the ellipsoid; null does nothing
    /// @return the ellipsoid
    TQEllipsoid* addEllipsoid(std::unique_ptr<TQEllipsoid> ellipsoid);

    /// The ellipsoid of a name; null when none is registered.
    /// @param name the name; null means the ellipsoid without name
    TQEllipsoid* ellipsoidWithName(const TQString* name) const { return _ellipsoids.lookup(name); }

    /// The ellipsoid of a name; null when none is registered.
    /// @param name the name
    TQEllipsoid* ellipsoidWithName(const TQString& name) const { return _ellipsoids.lookup(name); }

    /// The ellipsoids by their names.
    const HashTbl<TQEllipsoid>& ellipsoids() const { return _ellipsoids; }

    /// Reads every ellipsoid file (`*.ell`, a text block "TQEllipsoid v") of a directory, then every datum
    /// file (`*.dtm`) of another. What cannot be read is left out; of ellipsoid files it is reported.
    /// Nothing is read when the first directory cannot be listed.
    /// @param ellipsoidDirectory the directory of ellipsoid files
    /// @param datumDirectory the directory of datum files
    void loadEllipsoidDirectories(const TQString& ellipsoidDirectory, const TQString& datumDirectory);

    /// Writes block "TQEllMgr", version 0: the number of ellipsoids and each one's block.
    /// @param stream the stream to write to, not null
    void archiveTo(TQWriteStream* stream) const override;

    /// Writes the same block: all ellipsoids.
    /// @param stream the stream to write to, not null
    /// @param usedOnly not used
    void archiveTo(TQWriteStream* stream, bool usedOnly) const;

    /// Reads what archiveTo() wrote; what unarchiveFrom(TQReadStream*, bool) answers is lost.
    /// @param stream the stream to read from, not null
    void unarchiveFrom(TQReadStream* stream) override;

    /// Reads block "TQEllMgr" and merges its ellipsoids: one whose name is registered with another definition
    /// gives its axes to the registered one, whose datum shift stays as it is; one whose name is not
    /// registered is added. What was read before a fault stays. Projections keep what they derived from the
    /// old axes; takeChanged() tells on which ellipsoids.
    /// @param stream the stream to read from, not null
    /// @param inDocument not used
    /// @return a Code
    virtual int unarchiveFrom(TQReadStream* stream, bool inDocument);

    /// Registered ellipsoids that got other axes.
    using Changed = std::unordered_set<const TQEllipsoid*>;

    /// The ellipsoids that got other axes since this was asked for the last time, also before a fault: the
    /// projections on them must take them anew. They live as long as the registry; a copy has none of them.
    Changed takeChanged();

  private:
    void loadEllipsoidFile(const TQString& path);
    void merge(std::unique_ptr<TQEllipsoid> ellipsoid);

    HashTbl<TQEllipsoid> _ellipsoids{50};
    std::vector<std::unique_ptr<TQEllipsoid>> _replaced;
    Changed _changed; // since they were taken
};
