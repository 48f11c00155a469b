#pragma once

#include "TQProjectionExport.h"

#include "support/HashTbl.h"
#include "support/TQSharedObject.h"
#include "support/TQString.h"

#include <memory>

class TQProjection;
struct TQReferenceSystem;

/// The catalogue of the reference systems in PROJ's database, projected and geographic ones of the Earth,
/// sorted into families for menus, with a display name for each; and the names under which projections of
/// these systems are known.
///
/// Such an external name is a tab, the authority, ":" and the code; for the authority "EPSG" it is a tab,
/// "EPSG_" and the code ("\tEPSG_2154"). A carriage return behind either marks an entry as deprecated; in the
/// catalogue names stand without it.
///
/// The family of a geographic system begins with a tab, that of what an authority other than "EPSG" has
/// besides the families of areas with a carriage return: sorted by their characters they stand first and
/// before the others. Families come from the areas file "TQN_ProjAreas.txt"; without it and without a
/// database there are fewer families and systems, or none.
///
/// Belongs to the application's thread. Texts are in the language that is set when it is built.
class TQPROJECTION_EXPORT TQExternalProjList : public TQSharedObject {
    TQ_IDENTITY(TQExternalProjList, TQSharedObject)

  public:
    /// The external names of a family's systems, by display name.
    using Family = HashTbl<TQString>;

    /// Builds the catalogue. If the shared directory holds PROJ's database ("PROJ/proj.db"), PROJ's default
    /// context, and all contexts made later, look for their files there.
    TQExternalProjList();

    /// A catalogue with the same contents, which both share.
    /// @param other the other catalogue
    TQExternalProjList(const TQExternalProjList& other);

    TQExternalProjList& operator=(const TQExternalProjList&) = delete;
    ~TQExternalProjList() override;

    /// The catalogue of the process, built and registered as a shared object when it is first asked for;
    /// never null, owned by the registry.
    static TQExternalProjList* appShared();

    /// Removes the catalogue of the process, if there is one, and deletes it.
    static void deleteAppShared();

    /// Whether a name is external: it begins with a tab.
    /// @param name the name
    static bool isExternalProjectionName(const TQString& name);

    /// Takes an external name apart.
    /// @param name the name
    /// @param authority receives the authority; untouched when the name is no external one
    /// @param code receives the code, without the mark; untouched when the name is no external one
    /// @param deprecated receives whether the name has the mark, false when it is no external one; or null
    /// @return whether it is an external name with an authority
    static bool authorityAndCodeForExternalProjName(const TQString& name, TQString& authority, TQString& code,
                                                    bool* deprecated = nullptr);

    /// The EPSG code of an external name.
    /// @param name the name
    /// @param geodeticCode receives the code of the system's geodetic reference system, 0 when there is
    ///        none; or null. PROJ builds the system to find out.
    /// @param deprecated receives whether the name has the mark, false when it has no EPSG code; or null
    /// @return the code; 0 for a name that does not begin with "\tEPSG_"
    static int numericalIDForEPSGExternalProjName(const TQString& name, int* geodeticCode = nullptr,
                                                  bool* deprecated = nullptr);

    /// The external name of a system.
    /// @param authority the authority; "EPSG", exactly so, has a form of its own
    /// @param code the code
    /// @param deprecated whether the name gets the mark
    static TQString conventionalNameFromAuthAndStringCode(const TQString& authority, const TQString& code,
                                                          bool deprecated);

    /// conventionalNameFromAuthAndStringCode() for a code that is a number.
    static TQString conventionalNameFromAuthAndNumericalCode(const TQString& authority, int code,
                                                             bool deprecated);

    /// A projection of a system under its external name, made also when PROJ cannot build it: invalid then.
    /// One of an authority or a code that holds more than letters, digits, "_", "-" and "." is confined
    /// (TQPrProj4), as names come out of documents.
    /// @param authority the authority
    /// @param code the code
    /// @param deprecated whether the system is deprecated: the name gets the mark, and geographic points
    ///        are on WGS 84 then, not on the system's own datum
    static std::unique_ptr<TQProjection> newExternalProjectionFromAuthAndStringCode(const TQString& authority,
                                                                                    const TQString& code,
                                                                                    bool deprecated);

    /// newExternalProjectionFromAuthAndStringCode() for the authority "EPSG".
    static std::unique_ptr<TQProjection> newExternalEPSGProjectionFromID(int code, bool deprecated);

    /// Looks a system up.
    /// @param name its external name, with the mark or without
    /// @param family receives its family; untouched when the catalogue does not hold it
    /// @param displayName receives its display name; or null
    /// @return whether the catalogue holds it
    bool getFamilyAndNameForExternalProjName(const TQString& name, TQString& family,
                                             TQString* displayName = nullptr) const;

    /// The name to show for a projection: display name and family in parentheses if the catalogue holds it,
    /// its own name if not.
    /// @param projection the projection; the empty text for null, or for one without a name
    TQString displayNameForExternalProj(const TQProjection* projection) const;

    /// All families by their names.
    const HashTbl<Family>& families() const { return *_families; }

  private:
    using Names = HashTbl<TQString>;

    std::shared_ptr<const HashTbl<Family>> _families; // shared with copies, as are the names
    std::shared_ptr<const Names> _names;              // display name, tab and family, by external name
};
