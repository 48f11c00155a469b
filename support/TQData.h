#pragma once

#include "TQSystemWExport.h"
#include "support/TQIdentity.h"
#include "support/TQObject.h"
#include "support/TQSharedString.h"
#include "support/TQString.h"

#include <concepts>
#include <cstdint>
#include <memory>
#include <variant>

/// A truth value that is told apart from an integer: it is made of bool and of nothing else.
class Logical {
  public:
    /// False.
    constexpr Logical() = default;

    /// A truth value.
    /// @param value the value
    template <std::same_as<bool> B>
    constexpr Logical(B value) : _value(value) {}

    /// The value as bool.
    constexpr operator bool() const { return _value; }

  private:
    bool _value = false;
};

/// The kinds of value that a TQData holds.
enum TQDataType : int {
    TQDataLogical = 0,     ///< Logical
    TQDataInt = 1,         ///< 32-bit integer
    TQDataDouble = 2,      ///< double
    TQDataString = 3,      ///< TQString
    TQDataSharedString = 4 ///< TQSharedString
};

/// A named value of one of five kinds.
class TQSYSTEMW_EXPORT TQData : public TQObject {
    TQ_IDENTITY(TQData, TQObject)

  public:
    /// The logical value false without a name, to be read from an archive.
    TQData() = default;

    /// A logical value.
    /// @param name the name, copied
    /// @param value the value
    TQData(const TQString& name, Logical value);

    /// A logical value.
    /// @param name the name, copied
    /// @param value the value
    template <std::same_as<bool> B>
    TQData(const TQString& name, B value) : TQData(name, Logical(value)) {}

    /// An integer.
    /// @param name the name, copied
    /// @param value the value
    TQData(const TQString& name, int value);

    /// A number.
    /// @param name the name, copied
    /// @param value the value
    TQData(const TQString& name, double value);

    /// A text.
    /// @param name the name, copied
    /// @param value the value, copied
    TQData(const TQString& name, const TQString& value);

    /// A shared text.
    /// @param name the name, copied
    /// @param value the text, of which the object and each of its copies count a use, or null for none
    TQData(const TQString& name, TQSharedString* value);

    /// The name; the object owns it.
    const TQString* name() const { return &_name; }

    /// The kind of the value.
    TQDataType type() const { return static_cast<TQDataType>(_value.index()); }

    /// The value as a truth value: whether the number, or the one that the text begins with, is not 0; the
    /// text "true" is true.
    Logical logicalValue() const;

    /// The value as an integer: doubles lose their fraction and are limited to 32 bits, not-a-number gives
    /// 0, texts are read by TQString::convertToLong(), true is 1.
    int intValue() const;

    /// The value as a double; texts are read by TQString::convertToDouble(), true is 1.
    double doubleValue() const;

    /// The text or shared text, which stays the object's; null for the other kinds.
    const TQString* stringValue() const;

    /// The shared text, in use by the object; null for the other kinds.
    TQSharedString* sharedStringValue() const;

    /// Appends the name of the value's kind: "Logical", "Int", "Double", "String" or "SharedString".
    /// @param text the text to append to
    void appendTypeRepresentation(TQString& text) const;

    /// The name of the value's kind.
    std::unique_ptr<TQString> newTypeRepresentation() const;

    /// Appends the value as text: "true" or "false", decimal digits, the shortest text that reads back to
    /// the same double, the text itself.
    /// @param text the text to append to
    void appendValueRepresentation(TQString& text) const;

    /// The value as text.
    std::unique_ptr<TQString> newValueRepresentation() const;

    /// Takes a value of the same kind from its representation. Logical values are also read from "1" and
    /// "0", integers are limited to 32 bits.
    /// @param text the representation; blanks may stand around logical values and numbers
    /// @return false, and nothing changed, when the text is none
    bool takeValueFromRepresentation(const TQString& text);

    /// Takes kind and value of another one; the name stays.
    /// @param other the other one, or this one
    void setValueFrom(const TQData& other);

    /// Whether the other object is a TQData too, with the same name, kind and value.
    /// @param other the object to compare with, or null
    bool isEqual(const TQObject* other) const override;

    /// Writes the block "TQData": name, kind and value; a shared text is written as its text.
    /// @param stream the stream to write to, not null
    void archiveTo(TQWriteStream* stream) const override;

    /// Reads what archiveTo() wrote. Nothing is changed when the stream fails or the version is unknown.
    /// @param stream the stream to read from, not null
    void unarchiveFrom(TQReadStream* stream) override;

  private:
    /// In the order of TQDataType.
    using Value = std::variant<Logical, std::int32_t, double, TQString, TQSharedStringUse>;

    static Value unarchiveValue(std::int32_t type, TQReadStream* stream);

    TQString _name;
    Value _value;
};
