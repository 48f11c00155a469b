#pragma once

#include "TQProjectionExport.h"

#include "projection/TQProjection.h"
#include "support/TQString.h"
#include "support/TQUnit.h"
#include "support/TQWeakPointer.h"
#include "support/TQXMLElement.h"

#include <cstdint>

class TQProjMgr;
class TQReadStream;
class TQWriteStream;
class TQXMLReadDocument_withProjMgr;
class TQXMLWriteDocument;

/// In which coordinate system a document or a layer has its coordinates: a projection of a manager, or none
/// for geographic coordinates; their unit, with a scale; and the name of a geographic coordinate system.
///
/// With a projection the unit is to be none of angles, without one a unit of angles, which here is a code
/// with one of the bits 0x30000000. Readers see to it; setters take what they get. A scale may be any
/// number, also zero or one that is not finite: nobody looks at it.
///
/// The projection belongs to its manager. It may be destroyed before the georeference, which then still
/// tells its name, writes it, and keeps to plane coordinates. The name is also kept beside a placeholder,
/// which has none of its own, so that a document whose projection is missing loses nothing by being saved.
///
/// A placeholder stays the georeference's projection when the manager has found the one that was missing: no
/// observer is behind it. The application sets the projection again, by projectionName().
///
/// A value: copies mean the same projection. Belongs to the application's thread.
class TQPROJECTION_EXPORT TQBasicGeoref {
  public:
    /// Geographic coordinates in degrees, without the name of a system.
    TQBasicGeoref() = default;

    /// A georeference of these values.
    /// @param projection the projection, owned by its manager; null for geographic coordinates
    /// @param unit the unit code of the coordinates
    /// @param unitScale the scale of the unit
    /// @param gcs the name of the geographic coordinate system, or an empty text
    TQBasicGeoref(TQProjection* projection, std::uint32_t unit, double unitScale, const TQString& gcs);

    /// Whether coordinates are those of a projection, be it gone or not; false for geographic ones.
    bool hasProjection() const { return _projection.isSet(); }

    /// The projection, owned by its manager; null for geographic coordinates, and when it was destroyed.
    TQProjection* projection() const { return _projection.get(); }

    /// The name of the projection: its own one; of a placeholder, or when it was destroyed, the one that it
    /// was given or read by. Empty without a projection.
    TQString projectionName() const;

    /// Sets the projection.
    /// @param projection the projection, owned by its manager; null for geographic coordinates
    void setProjection(TQProjection* projection);

    /// The unit code of the coordinates.
    std::uint32_t unit() const { return _unit; }

    /// Sets the unit code of the coordinates.
    /// @param unit the unit code
    void setUnit(std::uint32_t unit) { _unit = unit; }

    /// The scale of the unit.
    double unitScale() const { return _unitScale; }

    /// Sets the scale of the unit.
    /// @param unitScale the scale
    void setUnitScale(double unitScale) { _unitScale = unitScale; }

    /// The name of the geographic coordinate system; may be empty.
    const TQString& gcs() const { return _gcs; }

    /// Sets the name of the geographic coordinate system.
    /// @param gcs the name; may be empty
    void setGcs(const TQString& gcs) { _gcs = gcs; }

    /// Writes block "TQBasicGeoref", version 1.
    /// @param stream the stream to write to; null writes nothing
    void archiveTo(TQWriteStream* stream) const;

    /// Reads block "TQBasicGeoref", of version 1 or 0. A projection that the manager does not know becomes
    /// its placeholder. Version 1 takes an external projection that PROJ cannot build as it is, version 0
    /// refuses it.
    ///
    /// An unknown version, a unit that does not fit and a projection refused are reported. After a failure
    /// the georeference is partly filled and must not be used.
    /// @param stream the stream to read from; null has no block
    /// @param manager the manager to resolve the projection's name against; null knows no projection
    /// @return whether there was such a block, whole and sound
    bool unarchiveFrom(TQReadStream* stream, TQProjMgr* manager);

    /// Writes the children "ProjectionID" (with a projection), "Unit", "UnitScale" and "GCS". Of the
    /// projection that is its EPSG code, 0 when its name is none of EPSG, with the mark of a deprecated
    /// system as the attribute "usingDatum".
    /// @param document the document to write to; null writes nothing
    /// @param parent the element that gets the children
    void xmlWriteContentTo(TQXMLWriteDocument* document, const TQXMLElement& parent) const;

    /// Reads the children that xmlWriteContentTo() writes. "UnitScale" (1) and "GCS" (empty) may be missing.
    ///
    /// The code in "ProjectionID" is looked up under the authority "EPGS", a quirk that is kept: PROJ knows
    /// no such authority, and what has this child is refused.
    ///
    /// After a failure the georeference is partly filled and must not be used.
    /// @param document the document, with the manager to resolve the projection against; null has no content
    /// @param parent the element with the children
    /// @param error receives the reason in the user's language, untouched on success; that of a
    ///        "ProjectionID" that holds no code, or stands there twice, is appended
    /// @return whether the children were sound
    bool xmlReadFrom(TQXMLReadDocument_withProjMgr* document, const TQXMLElement& parent, TQString& error);

    /// The coordinate system in one line for the user: "Geographic (deg)", or
    /// "WGS 84 / UTM zone 31N (EPSG:32631) (WGS 84 UTM) - GCS:WGS 84(km * 2.500000)". A text behind the name
    /// tells that the projection needs a datum shift. Two quirks are kept: no blank follows the name of a
    /// projection that needs none, and two stand before "- GCS:" elsewhere.
    TQString displayString() const;

  private:
    void refer(TQProjection* projection, const TQString& name);
    bool referToExternal(TQProjMgr* manager, const char* authority, int code, bool deprecated);
    bool hasFittingUnit() const;

    bool readNewest(TQReadStream& stream, TQProjMgr* manager);
    bool readOldest(TQReadStream& stream, TQProjMgr* manager);
    bool readUnit(TQReadStream& stream);

    bool xmlReadProjection(const TQXMLReadDocument_withProjMgr& document, const TQXMLElement& parent,
                           TQString& error);
    bool xmlReadUnit(const TQXMLReadDocument_withProjMgr& document, const TQXMLElement& parent,
                     TQString& error);
    bool xmlReadUnitScale(const TQXMLReadDocument_withProjMgr& document, const TQXMLElement& parent,
                          TQString& error);
    bool xmlReadGcs(const TQXMLReadDocument_withProjMgr& document, const TQXMLElement& parent,
                    TQString& error);

    TQString projectionDisplayString() const;

    TQWeakPointer<TQProjection> _projection; // owned by its manager
    std::uint32_t _unit = TQUnitDegree;
    double _unitScale = 1.0;
    TQString _gcs;
    TQString _projectionName; // as the projection was given or read
};
