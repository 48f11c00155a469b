#pragma once

#include "TQSystemWExport.h"

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

class TQString;

/// One argument of tq_formatText(): an integer, a floating-point number or a text, each made implicitly.
class TQSYSTEMW_EXPORT TQFormatArgument {
  public:
    /// A signed integer, bool or character. The width of its type decides what %u, %x, %X and %o print
    /// for a negative one, as in C (at least the width of int).
    /// @param value the integer
    template <std::integral T>
    TQFormatArgument(T value)
        : _value(Integer{static_cast<std::uint64_t>(value), sizeof(T) > sizeof(int) ? 64 : 32}) {}

    /// A floating-point number.
    /// @param value the number
    template <std::floating_point T>
    TQFormatArgument(T value) : _value(static_cast<double>(value)) {}

    /// A C string, read as a TQString reads it; null prints as "(null)".
    /// @param text the text, or null
    TQFormatArgument(const char* text);

    /// A text whose bytes are read as a TQString reads those of a C string.
    /// @param text the text
    TQFormatArgument(std::string_view text);

    /// A text.
    /// @param text the text
    TQFormatArgument(const std::string& text);

    /// A text in whatever encoding.
    /// @param text the text
    TQFormatArgument(const TQString& text);

  private:
    friend class TQFormatter;

    /// The bits of an integer, sign-extended, and the count of them that its type has.
    struct Integer {
        std::uint64_t bits;
        int width;
    };

    std::variant<Integer, double, std::string> _value;
};

/// Formats like `snprintf` in the C locale, under whatever locale, and never with undefined behaviour.
///
/// Understood are the flags - + space 0 #, a width, a precision (up to 9999 each) and the conversions
/// d i u x X o c s f F e E g G %; the length modifiers h l ll z are skipped, since the arguments know
/// their own types. Arguments are taken in order, one by each conversion. A conversion without a matching
/// argument (none left, or of another kind) and everything else that is not understood is copied out as
/// it stands. Differences from `snprintf`: not-a-number prints as "nan" without sign ("NAN" for F, E
/// and G); width and precision of texts count characters, not bytes; %c prints the character of a Unicode
/// code.
/// @param format the format, read as a TQString reads a C string
/// @param arguments the arguments
/// @return the text as UTF-8
TQSYSTEMW_EXPORT std::string tq_formatText(std::string_view format,
                                           std::initializer_list<TQFormatArgument> arguments);

/// tq_formatText() with the arguments written one after the other.
/// @param format the format
/// @param arguments integers, floating-point numbers, C strings, std::string, std::string_view, TQString
/// @return the text as UTF-8
template <class... A>
std::string tq_format(std::string_view format, const A&... arguments) {
    return tq_formatText(format, {TQFormatArgument(arguments)...});
}
