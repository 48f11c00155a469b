#pragma once

#include "TQProjectionExport.h"

#include "ellipsoid/TQEllMgr.h"
#include "manager/TQProjNotificationUser.h"
#include "manager/TQProjObservers.h"
#include "projection/TQDummyProjection.h"
#include "projection/TQProjection.h"
#include "support/HashTbl.h"
#include "support/TQArray.h"
#include "support/TQIdentity.h"
#include "support/TQLife.h"
#include "support/TQObject.h"
#include "support/TQOwningSlot.h"
#include "support/TQString.h"
#include "support/TQWeakPointer.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <system_error>
#include <vector>

class TQBaseNameIndex;

/// The projections that an application, or one of its documents, works with, by name, and their ellipsoids.
///
/// It owns all projections that it hands out; callers never delete one. They are:
/// - its own, from projection files (resources, and those of users);
/// - external ones, of reference systems in PROJ's database, made when their name is asked for
///   (TQExternalProjList tells their names);
/// - placeholders for names that were asked for and are not known. Those that were replaced are kept until
///   the manager dies, as somebody may hold them.
///
/// A copy of a manager shares what there was when it was made - projections, ellipsoids, observers - and
/// may be destroyed before or after the other.
///
/// Belongs to the application's thread.
class TQPROJECTION_EXPORT TQProjMgr : public TQObject {
    TQ_IDENTITY(TQProjMgr, TQObject)

  public:
    /// How projections are taken from files, where the second and the last one count, and from documents,
    /// whose stream carries them as its flags.
    enum LoadFlags : std::uint32_t {
        FromDocument = 1,         ///< newProjFromStream() makes no resources
        Silent = 4,               ///< show no panel when a projection gets another name, or is refused
        KeepPresent = 8,          ///< a projection that is there stays, whatever the document has of its name
        ReplaceInObservers = 32,  ///< observers are switched over to what the document has
        AnnounceReplacements = 64 ///< show a panel when a projection takes the place of another, or keeps it
    };

    /// A manager. The first one of the process adds the texts of "projMessages" to the localizer and builds
    /// the catalogue TQExternalProjList.
    /// @param loadResources whether to read the ellipsoids, datums and projections of the shared directory
    explicit TQProjMgr(bool loadResources);

    /// A manager that shares what the other one has.
    /// @param other the other manager
    TQProjMgr(const TQProjMgr& other);
    TQProjMgr& operator=(const TQProjMgr&) = delete;
    ~TQProjMgr() override;

    /// The projection of a name. An external one that PROJ cannot build is invalid and made anew each time;
    /// of several names of an external one, all give the same projection.
    /// @param name the name; external when it begins with a tab
    /// @param createIfMissing whether an unknown name gets a placeholder
    /// @return the projection, owned by the manager; null when there is none
    TQProjection* projWithName(const TQString& name, bool createIfMissing);

    /// projWithName() for a pointer to the name.
    /// @param name the name; null has no projection
    /// @param createIfMissing whether an unknown name gets a placeholder
    TQProjection* projWithName(const TQString* name, bool createIfMissing);

    /// Deletes an external projection that projWithName() gave and did not register, being invalid; any other
    /// projection stays.
    /// @param projection the projection, or null
    void disposeOfUnregistered(TQProjection* projection);

    /// Removes and deletes the projection of a name, if there is one, and tells the observers in any case.
    /// @param name the name
    void destroy(const TQString& name);

    /// The names of all own projections, sorted by their characters.
    std::unique_ptr<TQArray<TQString>> newListOfProjNames() const;

    /// The names of all ellipsoids, in table order.
    std::unique_ptr<TQArray<TQString>> newListOfEllipsoidNames() const;

    /// The own projection that follows in table order; null at the end.
    /// @param state how far the iteration has come; null gives the first projection
    TQProjection* traverseUserProjs(HashState<TQProjection>* state) const;

    /// Registers an observer.
    /// @param user the observer; null is not registered
    /// @param replace whether it takes the place of the first observer of the same owner
    void registerUser(std::unique_ptr<TQProjNotificationUser> user, bool replace);

    /// Unregisters and deletes the first observer of an owner, also for copies of the manager.
    /// @param owner the owner
    void unregisterUser(const void* owner);

    /// Whether an observer uses a projection.
    /// @param projection the projection
    bool isProjectionUsed(const TQProjection* projection) const;

    /// Whether a projection may be deleted: no observer uses it. Nothing is deleted.
    /// @param projection the projection
    bool willDeleteProjection(const TQProjection* projection) const;

    /// Puts projections that were registered meanwhile in the place of their placeholders, then asks the user
    /// for the files of those that are missing, until none is or the user gives up, and reads the resources
    /// again. All observers are told of each placeholder that found its projection.
    /// @param unused not used
    /// @return whether none is missing any more; in batch mode nobody brings files
    bool checkAndResetUnknowProjection(bool unused);

    /// Destroys every own projection that is no resource and that no observer uses.
    void cleanNoResourcesUnusedProj();

    /// The directory of the resource projections.
    TQString defaultProjDirectory() const;

    /// Forgets which projections the names of the document being read mean.
    void reinitReadXREFTable();

    /// Forgets the file of a resource projection.
    /// @param name the projection's name
    void removeResourceProjnameInResourcesPathList(const TQString& name);

    /// The file that a resource projection was read from or saved to; null when none is known.
    /// @param name the projection's name
    const TQString* resourcePath(const TQString& name) const;

    /// The ellipsoids.
    TQEllMgr& ellipsoidManager() const { return *_ellMgr; }

    /// Reads a projection file, see TQProjectionFile.
    /// @param path the file
    /// @return the projection, which owns its ellipsoid; null for a file that cannot be read, which is
    ///         reported if it can be opened
    static std::unique_ptr<TQProjection> createProjectionFromPath(const TQString& path);

    /// Reads a projection file and registers the projection, see addLoadedProjection().
    bool loadProjection(const TQString& path, bool isResource, std::uint32_t flags);

    /// loadProjection() for every projection file (`*.proj`) of a directory, in the order of their names.
    void loadProjectionFromDirectory(const TQString& directory, bool isResource, std::uint32_t flags);

    /// Reads the resource projections of a directory.
    /// @param directory the directory
    void loadResourceDirectory(const TQString& directory);

    /// Reads the resource projections of defaultProjDirectory().
    void loadDefaultsFromDirectory();

    /// Registers a projection. It gets the registered ellipsoid of the name of its own, if there is one.
    /// Where its name is taken by another definition, a user's projection takes the place of the old one, or
    /// another name if an observer uses the old one; a resource is refused. Panels tell the user, in batch
    /// mode none.
    /// @param projection the projection; null is not registered
    /// @param isResource whether it came with the application
    /// @param flags LoadFlags
    /// @param path the file that it came from, kept for resources; or null
    /// @return whether it is registered; if not it is destroyed
    bool addLoadedProjection(std::unique_ptr<TQProjection> projection, bool isResource, std::uint32_t flags,
                             const TQString* path);

    /// Writes a projection to a file. In defaultProjDirectory() it becomes a resource with this file.
    /// @param name the projection's name; an unknown one writes nothing
    /// @param path the file
    void saveProjection(const TQString& name, const TQString& path);

    /// Writes the ellipsoids and the user's projections to a document; see unarchiveFrom().
    /// @param stream the stream to write to, not null
    void archiveTo(TQWriteStream* stream) const override;

    /// Writes block "TQEllMgr" with all ellipsoids, and block "TQProjMgr", version 0, with projections. Those
    /// of a class that the factory does not make (tq_registerProjectionClass()) are left out; of projections
    /// with different ellipsoids of one name, the document has one of these. Both are reported.
    /// @param stream the stream to write to, not null
    /// @param usedOnly true: the projections that observers use, also resources; false: all but resources
    void archiveTo(TQWriteStream* stream, bool usedOnly) const;

    /// Reads what archiveTo() wrote.
    /// @param stream the stream to read from, not null
    void unarchiveFrom(TQReadStream* stream) override;

    /// Reads what archiveTo() wrote and merges it with what the manager has; LoadFlags, as the stream's
    /// flags, tell how. An ellipsoid of the document gives its axes to the registered one of its name, and
    /// the projections on that follow. Until the names are reset, by reinitReadXREFTable() or another read,
    /// projWithName() finds for a name of the document what has become of its projection, and so do
    /// references in the stream. A fault ends the reading; what was read before it stays. Observers and
    /// panels that read another document meanwhile end the meanings of names.
    /// @param stream the stream to read from, not null
    /// @param unused not used
    /// @return whether all was read
    bool unarchiveFrom(TQReadStream* stream, bool unused);

    /// Reads a projection of a document. An ellipsoid that is not registered makes it unreadable.
    /// @param stream the stream to read from, not null
    /// @return the projection, which nobody has registered, and for which its reference in the stream stands;
    ///         null when it cannot be read
    std::unique_ptr<TQProjection> newProjFromStream(TQReadStream* stream) const;

    /// Gives a projection that was read from an archive the registered ellipsoid whose name it read, or none
    /// for an empty name. Any other projection stays as it is.
    /// @param projection the projection
    /// @return false, which is reported, when no ellipsoid of this name is registered
    bool awakeOneProjection(TQProjection& projection) const;

    /// Writes a projection file for each projection that a document needs: those of the user, and resources
    /// that observers use. Files are named after the projections.
    /// @param directory the directory, made when there is something to write
    /// @return whether every file was written
    bool archiveNecessaryProj(const TQString& directory);

    /// Writes projection files, as the other form does, and tells the system's reason of a failure.
    /// @param directory the directory, made when there is something to write
    /// @param reason receives why the first file that could not be written could not; no error when every
    ///        file was written, or when a projection is the reason
    /// @return whether every file was written
    bool archiveNecessaryProj(const TQString& directory, std::error_code& reason);

    /// The projection of this manager for one of another: that of its name, or else a copy, which is the
    /// user's then and has its ellipsoid registered.
    /// @param projection the other manager's projection; null has none
    /// @param source the other manager, or null
    /// @return the projection, owned by this manager; null, which is reported, for one of a class that the
    ///         factory does not make, such as a placeholder
    TQProjection* getProjectionWithNameFromGeorefMgr(TQProjection* projection, TQProjMgr* source);

    /// Makes a projection from a table of parameters: "Type" is its type code, "Ellipsoide" the name of its
    /// ellipsoid, the others are those of its class. Its name is not looked at: it may be there already.
    /// @param params the parameters; not changed, may be null
    /// @return the projection, a user's one, owned by this manager; null without a known type
    TQProjection* createProjFromParams(HashTbl<TQProjParam>* params);

    /// Gives a projection of this manager the parameters of a table. It becomes the user's, unless it is a
    /// resource whose definition the table would leave as it is. An external one becomes one of the user
    /// under the name that it has or gets.
    /// @param projection the projection; one that this manager has not, or null, stays as it is
    /// @param params the parameters; not changed, may be null
    void modifyProjFromParams(TQProjection* projection, HashTbl<TQProjParam>* params);

    /// A token that expires when the manager is destroyed, whether or not a copy lives on; see TQWeakPointer.
    std::weak_ptr<const void> lifeToken() const { return _life.token(); }

  private:
    friend class TQProjectionArchive;
    friend class TQProjectionIntake;

    using OwningSlots = std::vector<TQOwningSlot<TQProjection>>;
    using Placeholders = std::vector<std::unique_ptr<TQDummyProjection>>;

    std::vector<TQWeakPointer<TQProjection>>
    ownProjectionsThat(const std::function<bool(const TQProjection&)>& areWanted) const;
    TQProjection* ownProjection(const TQString* name) const;
    void followEllipsoids(const TQEllMgr::Changed& changed) const;
    void letNameMean(const TQString* name, TQProjection& projection);
    TQProjection* placeholder(const TQString& name);
    TQProjection* externalProjection(const TQString& name);
    void destroy(TQProjection* projection);
    void registerProjection(std::unique_ptr<TQProjection> projection);
    std::unique_ptr<TQProjection> unregistered(TQProjection* projection);
    std::unique_ptr<TQProjection> copyForOther(const TQProjection& projection) const;
    void takeParams(TQProjection& projection, const HashTbl<TQProjParam>& params) const;
    bool save(TQProjection& projection, const TQString& name, const TQString& path, std::error_code& reason);
    void rememberPath(const TQString& name, const TQString& path);
    bool userWantsToLookAgain() const;
    void resolvePlaceholders();

    std::shared_ptr<HashTbl<TQProjection>> _projections;
    std::shared_ptr<TQBaseNameIndex> _baseNames;
    std::shared_ptr<HashTbl<TQProjection>> _externalProjections; // made when the first one is asked for
    std::shared_ptr<TQEllMgr> _ellMgr;
    TQProjObservers _users;
    std::shared_ptr<HashTbl<TQWeakPointer<TQProjection>>> _readXREFTable; // what names mean; or null
    std::shared_ptr<HashTbl<TQDummyProjection>> _unknownProjections;      // or null
    std::shared_ptr<HashTbl<TQString>> _resourcesPathList;                // or null
    std::shared_ptr<OwningSlots> _unregistered;
    std::shared_ptr<Placeholders> _retired;
    TQLife _life;
};
