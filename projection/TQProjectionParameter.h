#pragma once

#include "TQProjectionExport.h"
#include "manager/TQProjParam.h"
#include "support/HashTbl.h"

#include <span>

class TQFile;
class TQProjection;
class TQReadStream;
class TQWriteStream;

/// A number that defines a projection, stated once: everything that is done with parameters - listing
/// and taking them in tables, comparing, reading, writing and archiving them - runs over such statements.
struct TQPROJECTION_EXPORT TQProjectionParameter {
    const char* name;            ///< its name in parameter tables
    const char* unitLabel;       ///< its unit label there
    double TQProjection::*value; ///< the member that holds it
    double tolerance;            ///< the largest difference at which two projections are still the same
    const char* textFormat;      ///< printf-style format of its line in projection files
    int missingLine;             ///< the reader's code when that line is missing

    /// Unit label of angles in degrees: the French word in the default 8-bit encoding, six bytes.
    static constexpr const char* degrees = "degr\335s";
    /// Unit label of lengths in metres.
    static constexpr const char* metres = "m";
    /// Unit label of pure numbers.
    static constexpr const char* none = "";
    /// Format of a line with ten decimals.
    static constexpr const char* tenDecimals = "%4.10f";
    /// Format of a line with thirteen significant digits.
    static constexpr const char* thirteenDigits = "%.13g";

    /// States a parameter; the arguments are the members in their order.
    template <class Class>
    constexpr TQProjectionParameter(const char* itsName, const char* itsUnitLabel, double Class::*member,
                                    double itsTolerance, const char* itsTextFormat, int itsMissingLine)
        : name(itsName), unitLabel(itsUnitLabel), value(static_cast<double TQProjection::*>(member)),
          tolerance(itsTolerance), textFormat(itsTextFormat), missingLine(itsMissingLine) {}
};

/// The parameters that a projection class states, in the order of its tables, files and archives. The
/// projections handed to the operations must be of the class that stated them.
class TQPROJECTION_EXPORT TQProjectionParameters {
  public:
    /// The operations over a list of statements, which must outlive this object.
    /// @param list the statements
    constexpr TQProjectionParameters(std::span<const TQProjectionParameter> list) : _list(list) {}

    /// The first parameters only, as older files hold them.
    /// @param count how many
    TQProjectionParameters first(std::size_t count) const { return _list.first(count); }

    /// Adds every parameter to a table.
    /// @param projection the projection that holds the values
    /// @param table receives the parameters under their names
    void list(const TQProjection& projection, HashTbl<TQProjParam>& table) const;
    /// Takes every parameter that a table holds; the others stay.
    /// @param projection receives the values
    /// @param table the parameters under their names
    void take(TQProjection& projection, const HashTbl<TQProjParam>& table) const;
    /// Whether two projections differ in no parameter by more than its tolerance.
    /// @param one,other the projections
    bool areSame(const TQProjection& one, const TQProjection& other) const;
    /// Reads one line for each parameter.
    /// @param file the file, open for reading
    /// @param projection receives the values
    /// @return 0, or the code of the first line that is missing; those before it are taken
    int loadFrom(TQFile& file, TQProjection& projection) const;
    /// Writes one line for each parameter.
    /// @param file the file, open for writing
    /// @param projection the projection that holds the values
    /// @return whether every line was written
    bool writeTo(TQFile& file, const TQProjection& projection) const;
    /// Writes every parameter as a double.
    /// @param stream the stream to write to, not null
    /// @param projection the projection that holds the values
    void archiveTo(TQWriteStream* stream, const TQProjection& projection) const;
    /// Reads every parameter as a double; 0 from a stream that has failed.
    /// @param stream the stream to read from, not null
    /// @param projection receives the values
    void unarchiveFrom(TQReadStream* stream, TQProjection& projection) const;

  private:
    std::span<const TQProjectionParameter> _list;
};
