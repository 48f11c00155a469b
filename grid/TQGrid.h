#pragma once

#include "TQProjectionExport.h"

#include "grid/TQIndexParam.h"
#include "grid/TQVirtualDrawingGrid.h"
#include "manager/TQProjMgr.h"
#include "projection/TQProjection.h"
#include "support/TQAnglePoint.h"
#include "support/TQAngleSize.h"
#include "support/TQAngleWithUnit.h"
#include "support/TQIdentity.h"
#include "support/TQLife.h"
#include "support/TQObject.h"
#include "support/TQPoint.h"
#include "support/TQRect.h"
#include "support/TQSize.h"
#include "support/TQString.h"
#include "support/TQUnit.h"
#include "support/TQWeakPointer.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>

class TQReadStream;
class TQWriteStream;

/// A named map grid: lines every so many units of the plane (a metric grid) or of longitude and latitude (an
/// angular one), labels at its borders, and the projection that it is drawn in.
///
/// A grid has one unit. It counts as angular when tq_unitIsAngular() says so, else as metric; setMode() keeps
/// unit and mode together.
///
/// The projection belongs to its manager, and so it may be destroyed before the grid; the manager may be as
/// well. A grid that is bound to a manager by setProjMgr() observes it: it follows its projection when
/// another one takes its place, and keeps its name when it goes. A grid that was read, or whose projection
/// has gone, has the name of a projection without having one. Such a name is archived like that of a
/// projection and becomes one, at least a placeholder, with the next manager.
///
/// Belongs to the application's thread.
class TQPROJECTION_EXPORT TQGrid : public TQObject {
    TQ_IDENTITY(TQGrid, TQObject)

  public:
    /// Modes with a meaning for the unit; the program that draws knows others.
    enum Mode : int {
        MetricGrid = 1,      ///< metric
        AngularGrid = 2,     ///< angular
        OtherMetricGrid = 4, ///< metric
    };

    /// A grid without name, projection and manager, in mode 0 and centimetres.
    TQGrid() = default;

    /// A copy with a name, labels and bytes of drawing of its own, bound to the same manager. It gets the
    /// projection that the manager has under the name of the other one's, or none, and then keeps the name. A
    /// projection without a name, such as a placeholder, stays, and so does any of a grid without a manager.
    /// @param other the grid to copy
    TQGrid(const TQGrid& other);

    /// A grid read by unarchiveFrom().
    /// @param stream the stream to read from, not null
    explicit TQGrid(TQReadStream* stream);

    TQGrid& operator=(const TQGrid&) = delete;
    ~TQGrid() override;

    /// A grid read by unarchiveFrom(), for readers of what follows: they cannot know where a grid of an
    /// unknown version ends.
    /// @param stream the stream to read from, not null
    /// @return the grid; null after an unknown version or a fault, and the stream has failed
    static std::unique_ptr<TQGrid> newFromStream(TQReadStream* stream);

    // ---- Name, mode, unit

    /// The name; may be null.
    const TQString* name() const;

    /// Sets the name. A grid manager keeps the grid under the name that it had when it was added, see
    /// TQGridMgr.
    /// @param name the name, copied
    void setName(const TQString& name) { _fields.name = name; }

    /// The mode, 0 to 7; see Mode.
    int mode() const { return _fields.modes & modeBits; }

    /// Sets the mode. An angular grid in a metric unit gets degrees, a metric grid in an angular unit
    /// kilometres.
    /// @param mode the mode, of which the lowest three bits count
    void setMode(int mode);

    /// How the reference point is placed: bits 3 to 9 of a number, where they stand.
    int referencePointMode() const { return _fields.modes & referencePointModeBits; }

    /// Sets how the reference point is placed.
    /// @param mode the number, of which bits 3 to 9 count
    void setReferencePointMode(int mode);

    /// The unit code.
    std::uint32_t unit() const { return _fields.unit; }

    /// Sets the unit. Coordinates stay as they are, but for the regular grid limit of a metric grid, which is
    /// converted from the new unit to the old one, the wrong way round: a quirk that is kept.
    /// @param unit the unit code
    void setUnit(std::uint32_t unit);

    // ---- The metric grid

    /// A point that lines pass through, in the grid's unit.
    TQPoint referencePoint() const { return _fields.referencePoint; }
    /// Sets the point that lines pass through.
    /// @param point the point in the grid's unit
    void setReferencePoint(const TQPoint& point) { _fields.referencePoint = point; }

    /// The distances of the lines, in the grid's unit.
    TQSize spacing() const { return _fields.spacing; }
    /// Sets the distances of the lines.
    /// @param spacing the distances in the grid's unit
    void setSpacing(const TQSize& spacing) { _fields.spacing = spacing; }

    /// The limit of a regular grid, in the grid's unit.
    TQRect getRegularGridLimit() const { return _fields.regularGridLimit; }

    /// The limit of a regular grid in another unit; that of an angular grid as it is.
    /// @param unit the unit code wanted
    TQRect getRegularGridLimit(std::uint32_t unit) const;

    /// Sets the limit of a regular grid; that of an angular grid stays as it is.
    /// @param limit the limit
    /// @param unit its unit code
    void setRegularGridLimit(const TQRect& limit, std::uint32_t unit);

    // ---- The angular grid. Its values have units of their own.

    /// The point that meridians and parallels of the grid pass through. Of a metric grid it is reported as
    /// illogical.
    TQAnglePoint getAngularReferencePoint() const;

    /// Sets the point that meridians and parallels of the grid pass through.
    /// @param degrees the degrees, longitudes in x and latitudes in y
    /// @param minutes the minutes
    /// @param seconds the seconds
    void setAngularReferencePoint(const TQPoint& degrees, const TQPoint& minutes, const TQPoint& seconds);

    /// Sets the point that meridians and parallels of the grid pass through.
    /// @param point the point; converted to the grid's unit, a metric one of which it takes unchanged
    void setAngularReferencePoint(const TQAnglePoint& point);

    /// Sets the point that meridians and parallels of the grid pass through.
    /// @param point the point in the grid's unit
    void setAngularReferencePoint(const TQPoint& point);

    /// The meridian that longitudes count from. Of a metric grid it is reported as illogical.
    TQAngleWithUnit getAngularReferenceMeridian() const;

    /// Sets the meridian that longitudes count from, which gets no base-360 flag.
    /// @param meridian the longitude; converted to the grid's unit, a metric one of which it takes unchanged
    void setAngularReferenceMeridian(const TQAngleWithUnit& meridian);

    /// The distances of meridians and parallels. Of a metric grid they are reported as illogical.
    TQAngleSize getAngularSpacing() const;

    /// Sets the distances of meridians and parallels.
    /// @param degrees the degrees
    /// @param minutes the minutes
    /// @param seconds the seconds
    void setAngularSpacing(const TQSize& degrees, const TQSize& minutes, const TQSize& seconds);

    /// Sets the distances of meridians and parallels.
    /// @param spacing the distances in the grid's unit
    void setAngularSpacing(const TQSize& spacing);

    // ---- Borders, labels, drawing

    /// The distance of the border, in the grid's unit.
    TQSize borderDist() const { return _fields.borderDist; }
    /// Sets the distance of the border.
    /// @param distance the distance in the grid's unit
    void setBorderDist(const TQSize& distance) { _fields.borderDist = distance; }

    /// Whether lines on the border are kept: 0 or another number of the application.
    char keepsBorderLines() const { return _fields.keepsBorderLines; }
    /// Sets whether lines on the border are kept.
    /// @param keeps 0 or another number
    void setKeepsBorderLines(char keeps) { _fields.keepsBorderLines = keeps; }

    /// Whether there are labels.
    bool usesAlphanumbering() const { return indexParameters().usesAlphanumbering; }

    /// Whether labels end at a limit.
    bool usesNumberingLimit() const { return indexParameters().usesNumberingLimit; }

    /// The labels.
    const TQIndexParam& indexParameters() const { return _fields.indexParameters; }

    /// Sets the labels. Without alphanumbering the start labels go, and the rest of the numberings stays.
    /// @param parameters the labels
    void setIndexParameters(const TQIndexParam& parameters);

    /// Whether the grid is locked on the projection of the document's georeference.
    bool lockedOnGeoRefProjection() const { return _fields.lockedOnGeoRefProjection; }
    /// Sets whether the grid is locked on the projection of the document's georeference.
    /// @param locked the new answer
    void set_lockedOnGeoRefProjection(bool locked) { _fields.lockedOnGeoRefProjection = locked; }

    /// Whether the grid is external (TQGridMgr): its drawing definition is archived with it.
    bool isExternal() const { return _isExternal; }
    /// Sets whether the grid is external.
    /// @param isExternal the new answer
    void setIsExternal(bool isExternal) { _isExternal = isExternal; }

    /// A mark of the application, which is not archived; readFromFile() clears it.
    bool isMarked() const { return _isMarked; }
    /// Sets the mark of the application.
    /// @param isMarked the new answer
    void setIsMarked(bool isMarked) { _isMarked = isMarked; }

    /// What the drawing program keeps with the grid, owned by the grid; may be null.
    TQVirtualDrawingGrid* virtualDrawingDefinition() const { return _drawing.get(); }

    /// Gives the grid a drawing definition in place of the one before, which is destroyed. The one that it
    /// has already stays.
    /// @param definition the definition, or null
    void setVirtualDrawingDefinition(std::unique_ptr<TQVirtualDrawingGrid> definition);

    /// Destroys the drawing definition.
    void deleteVirtualDrawingDefinition();

    // ---- Projection and manager

    /// The projection, owned by its manager; null when there is none or it is gone.
    TQProjection* projection() const { return _projection.get(); }

    /// The name of the projection: its own one; of a placeholder, or when there is no projection, the one
    /// that the grid was read with, that the placeholder stands for or that the projection had. Null when
    /// there is none.
    ///
    /// A projection that has gone had the name that it was set with, or that it had when the manager told of
    /// a change for the last time. One that was renamed by TQProjection::rename() since, which nobody tells,
    /// is remembered under its former name.
    const TQString* projectionName() const;

    /// Sets the projection.
    /// @param projection the projection, owned by its manager; null for none, also no name
    void setProjection(TQProjection* projection);

    /// The manager that the grid is bound to; null when there is none or it is gone.
    TQProjMgr* projMgr() const { return _manager.get(); }

    /// Binds the grid to a manager, which observes it from now on and the one before no longer. The grid's
    /// projection becomes that of its name there, or none. A name without a projection, also that of a
    /// placeholder, gets its projection, or else a placeholder. An external projection that PROJ cannot build
    /// counts as none. The name stays in any case. The manager that it is bound to already changes nothing.
    /// @param manager the manager; null for none, and then no projection
    void setProjMgr(TQProjMgr* manager);

    /// A token that expires when the grid is destroyed or bound to another manager; see TQWeakPointer.
    std::weak_ptr<const void> lifeToken() const { return _binding->token(); }

    // ---- Archives and text files

    /// Writes block "TQGrid", version 10.
    /// @param stream the stream to write to, not null
    void archiveTo(TQWriteStream* stream) const override;

    /// Reads block "TQGrid" of version 0 to 10; what older ones lack is as in a new grid, and what they have
    /// in radians or typographic points becomes degrees or centimetres. Any other version is reported and not
    /// read. A grid that is not there whole fails the stream. The grid then stays as it was.
    ///
    /// The projection is looked up in the grid's manager; without one its name waits for setProjMgr().
    /// @param stream the stream to read from, not null
    void unarchiveFrom(TQReadStream* stream) override;

    /// Reads a grid from a text file, version 1 or 2; the file's format is told in docs/formats.md. Any other
    /// version is reported and nothing more read.
    ///
    /// What the file does not hold stays as it was, except that
    /// - the angular reference meridian becomes 0 degrees, whatever there is to read, if anything;
    /// - the mark of the application is cleared, as soon as the name is read;
    /// - the limit of a regular grid becomes that of a new grid, 0, 10, 10, -10, when the file's rectangle
    /// has
    ///   fewer than three points;
    /// - version 2 clears usesNumberingLimit(), and so does version 1, which sets all labels.
    ///
    /// The projection is looked up in the grid's manager; without one its name waits for setProjMgr().
    /// @param file a stream opened for reading; stays the caller's
    /// @return 0, or 1 when the stream is null, the version unknown, or a line or one of its numbers missing;
    ///         the grid is then partly filled
    int readFromFile(std::FILE* file);

  private:
    friend class TQGridProjNotifier;

    class Reader;
    class Writer;
    class TextReader;

    static constexpr int modeBits = 0x7;
    static constexpr int referencePointModeBits = 0x3F8;

    /// What a grid keeps as values.
    struct Fields {
        std::optional<TQString> name;
        TQRect regularGridLimit{0.0, 10.0, 10.0, -10.0};
        std::int32_t modes = 0; // mode and reference-point mode
        TQSize spacing;
        TQAngleSize angularSpacing{0.0, 0.0, TQUnitDegree};
        TQPoint referencePoint;
        TQAnglePoint angularReferencePoint{0.0, 0.0, TQUnitDegree};
        TQAngleWithUnit angularReferenceMeridian{0.0, TQUnitDegree};
        char keepsBorderLines = 0;
        TQSize borderDist;
        std::uint32_t unit = TQUnitCentimetre;
        TQIndexParam indexParameters;
        bool lockedOnGeoRefProjection = false;

        bool isAngular() const { return tq_unitIsAngular(unit); }
        void takeModes(std::int32_t number);
        void convertPlane(std::uint32_t from, std::uint32_t to);
        void modernizeUnits();
    };

    template <class Grid, class Archive>
    static void archiveFields(Grid& grid, Archive& archive);
    bool read(TQReadStream& stream);

    void reportIfMetric(const char* getter) const;
    void takeProjectionName(std::optional<TQString> name);
    void resolveProjection(bool createIfMissing);
    void rememberProjectionName();
    void noteChange();
    void stopObserving();
    void bindTo(TQProjMgr* manager);
    void leaveManager();

    Fields _fields;
    bool _isExternal = false;
    bool _isMarked = false;
    std::unique_ptr<TQVirtualDrawingGrid> _drawing;
    TQWeakPointer<TQProjection> _projection; // owned by its manager
    std::optional<TQString> _projectionName; // as far as the projection does not tell it
    TQWeakPointer<TQProjMgr> _manager;
    std::unique_ptr<TQLife> _binding = std::make_unique<TQLife>(); // to the manager, by its observer
};
