#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

/// The byte layout that TQWriteStream and TQReadStream share. Internal: the header is not installed.
///
/// Numbers are little-endian on every platform: a 16-bit version takes 2 bytes, a 32-bit integer 4, a
/// double 8 (IEEE 754 binary64). bool and char take 1 byte.
namespace TQStreamFormat {

/// The mark of a reference that introduces its object; the bits below it are the identifier.
inline constexpr std::uint32_t newObjectMark = 0x80000000U;

/// The reference to no object.
inline constexpr std::uint32_t nullReference = 0;

/// The most bytes of a class name that a version tag can hold.
inline constexpr std::size_t maximumClassNameLength = 255;

/// The most bytes of a version tag: the name's length, the name and the version.
inline constexpr std::size_t maximumTagLength = 1 + maximumClassNameLength + sizeof(std::int16_t);

/// The class name as a version tag holds it: its first 255 bytes; null is the empty name.
/// @param className the class name, or null
inline std::string_view tagName(const char* className) {
    return className == nullptr ? std::string_view{}
                                : std::string_view{className}.substr(0, maximumClassNameLength);
}

/// The bytes of an unsigned integer, lowest first.
/// @param value the integer
template <class Unsigned>
constexpr std::array<char, sizeof(Unsigned)> toBytes(Unsigned value) {
    static_assert(std::is_unsigned_v<Unsigned>);
    std::array<char, sizeof(Unsigned)> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>(static_cast<unsigned char>(value >> (8 * i)));
    }
    return bytes;
}

/// The unsigned integer whose bytes, lowest first, are the given ones.
/// @param bytes the bytes
template <class Unsigned>
constexpr Unsigned fromBytes(const std::array<char, sizeof(Unsigned)>& bytes) {
    static_assert(std::is_unsigned_v<Unsigned>);
    Unsigned value = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const Unsigned byte = static_cast<unsigned char>(bytes[i]);
        value = static_cast<Unsigned>(value | static_cast<Unsigned>(byte << (8 * i)));
    }
    return value;
}

} // namespace TQStreamFormat
