#pragma once

#include "TQProjectionExport.h"
#include "manager/TQProjParam.h"
#include "support/HashTbl.h"

#include <cstdint>
#include <span>
#include <string>
#include <variant>

class TQFile;
class TQProjection;
class TQReadStream;
class TQWriteStream;

/// A value that defines a projection, stated once: everything that is done with parameters - listing and
/// taking them in tables, comparing, copying, reading, writing and archiving them - runs over such
/// statements.
struct TQPROJECTION_EXPORT TQProjectionParameter {
    /// A member that holds a number.
    using Number = double TQProjection::*;
    /// A member that holds a truth value.
    using Flag = bool TQProjection::*;
    /// A member whose lower 16 bits hold options; the upper ones are no parameters.
    using Options = std::uint32_t TQProjection::*;

    const char* name;                           ///< its name in parameter tables
    const char* unitLabel;                      ///< its unit label there
    std::variant<Number, Flag, Options> member; ///< the member that holds it
    double tolerance;                           ///< the largest difference of the same definition
    const char* textFormat;                     ///< printf-style format of its line in projection files
    Flag condition = nullptr;                   ///< a flag, stated before, that it depends on
    int missingLine;                            ///< the reader's code when that line is missing
    int sinceVersion = 0;                       ///< the first version of text and archive that holds it
    bool conditionValue = true;                 ///< the value of that flag with which it has a meaning
    bool isKeptAsInteger = false;               ///< for a flag: see keptAsInteger()

    /// Unit label of angles in degrees: the French word in the default 8-bit encoding, six bytes.
    static constexpr const char* degrees = "degr\335s";
    /// Unit label of lengths in metres.
    static constexpr const char* metres = "m";
    /// Unit label of pure numbers.
    static constexpr const char* none = "";
    /// Format of a line with ten decimals.
    static constexpr const char* tenDecimals = "%4.10f";
    /// Format of a line with six decimals.
    static constexpr const char* sixDecimals = "%f";
    /// Format of a line with thirteen significant digits.
    static constexpr const char* thirteenDigits = "%.13g";

    /// States a number; the arguments are the members in their order.
    template <class Class>
    constexpr TQProjectionParameter(const char* itsName, const char* itsUnitLabel, double Class::*itsMember,
                                    double itsTolerance, const char* itsTextFormat, int itsMissingLine)
        : name(itsName), unitLabel(itsUnitLabel), member(static_cast<Number>(itsMember)),
          tolerance(itsTolerance), textFormat(itsTextFormat), missingLine(itsMissingLine) {}

    /// States a flag: a Logical in tables, a byte in archives, a line of 1 or 0 in files, where any number
    /// but 0 is read as true.
    template <class Class>
    constexpr TQProjectionParameter(const char* itsName, bool Class::*itsMember, int itsMissingLine)
        : name(itsName), unitLabel(none), member(static_cast<Flag>(itsMember)), tolerance(0.0),
          textFormat("%d"), missingLine(itsMissingLine) {}

    /// States options: a 32-bit integer in archives and a line with their number in files. Tables hold each
    /// option in an entry of its own, which is left to the class.
    template <class Class>
    constexpr TQProjectionParameter(std::uint32_t Class::*itsMember, int itsMissingLine)
        : name(none), unitLabel(none), member(static_cast<Options>(itsMember)), tolerance(0.0),
          textFormat("%d"), missingLine(itsMissingLine) {}

    /// The same parameter, which has a meaning only when a flag that is stated before it is set.
    template <class Class>
    constexpr TQProjectionParameter when(bool Class::*flag, bool value = true) const {
        TQProjectionParameter conditional = *this;
        conditional.condition = static_cast<Flag>(flag);
        conditional.conditionValue = value;
        return conditional;
    }

    /// The same parameter, which has a meaning only when a flag that is stated before it is not set.
    template <class Class>
    constexpr TQProjectionParameter unless(bool Class::*flag) const {
        return when(flag, false);
    }

    /// The same parameter, which text and archive hold from a version of the class's block on.
    constexpr TQProjectionParameter since(int version) const {
        TQProjectionParameter versioned = *this;
        versioned.sinceVersion = version;
        return versioned;
    }

    /// The same flag as a 32-bit integer in archives; in tables 1 alone is true.
    constexpr TQProjectionParameter keptAsInteger() const {
        TQProjectionParameter integer = *this;
        integer.isKeptAsInteger = true;
        return integer;
    }
};

/// The parameters that a projection class states, in the order of its tables, files and archives. The
/// projections handed to the operations must be of the class that stated them.
class TQPROJECTION_EXPORT TQProjectionParameters {
  public:
    /// No parameters.
    constexpr TQProjectionParameters() = default;
    /// The operations over a list of statements, which must outlive this object.
    /// @param list the statements
    constexpr TQProjectionParameters(std::span<const TQProjectionParameter> list) : _list(list) {}

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
    /// Copies every parameter that has a meaning in the source.
    /// @param source the projection that holds the values
    /// @param destination receives them
    void copy(const TQProjection& source, TQProjection& destination) const;
    /// Reads one line for each parameter.
    /// @param file the file, open for reading
    /// @param projection receives the values
    /// @param version the version of the class's block
    /// @return 0, or the code of the first line that is missing; those before it are taken
    int loadFrom(TQFile& file, TQProjection& projection, int version) const;
    /// Writes one line for each parameter, a number as TQFile::numberText() puts it.
    /// @param file the file, open for writing
    /// @param projection the projection that holds the values
    /// @return whether every line was written
    bool writeTo(TQFile& file, const TQProjection& projection) const;
    /// Writes every parameter, numbers as doubles.
    /// @param stream the stream to write to, not null
    /// @param projection the projection that holds the values
    void archiveTo(TQWriteStream* stream, const TQProjection& projection) const;
    /// Reads every parameter; 0 from a stream that has failed.
    /// @param stream the stream to read from, not null
    /// @param projection receives the values
    /// @param version the version of the class's block
    void unarchiveFrom(TQReadStream* stream, TQProjection& projection, int version) const;

  private:
    std::span<const TQProjectionParameter> _list;
};
