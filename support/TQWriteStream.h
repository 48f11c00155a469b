#pragma once

#include "TQSystemWExport.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <unordered_map>

/// Writes a binary archive; subclasses say where the bytes go.
///
/// Every number is little-endian: bool and char take 1 byte, 32-bit integers 4, doubles 8 (IEEE 754).
/// Only the exact types listed here can be written, so that a value never changes its width on the way.
class TQSYSTEMW_EXPORT TQWriteStream {
  public:
    TQWriteStream(const TQWriteStream&) = delete;
    TQWriteStream& operator=(const TQWriteStream&) = delete;
    virtual ~TQWriteStream();

    /// Opens a class's block with its version tag: one byte with the name's length, the name's bytes and
    /// the version in 2 bytes. Of a name longer than 255 bytes the first 255 are kept.
    /// @param className the name of the class; null is the empty name
    /// @param version the version of the block's layout
    void declareVersion(const char* className, std::int16_t version);

    /// Writes one byte, 1 for true and 0 for false.
    /// @param value the value to write
    void write(bool value);

    /// Writes one byte.
    /// @param value the byte
    void write(char value);

    /// Writes 4 bytes, two's complement.
    /// @param value the number
    void write(std::int32_t value);

    /// Writes 4 bytes.
    /// @param value the number
    void write(std::uint32_t value);

    /// Writes 8 bytes; every bit of the number is kept, also a NaN's payload and the sign of zero.
    /// @param value the number
    void write(double value);

    /// Writes a counted string: its length in 4 bytes, then its bytes without the closing NUL.
    /// @param cString the text; null is written as the empty text
    void write(const char* cString);

    /// Any other type would reach one of the forms above by a silent conversion of its width or meaning.
    template <class T>
    requires(!std::convertible_to<T, const char*>) void write(T) = delete;

    /// Writes a reference to an object in 4 bytes. Objects are numbered from 1 in the order of their first
    /// reference; the first one carries the mark 0x80000000 and is followed by whatever the caller writes
    /// of the object, later ones are the number alone. Null is the number 0 without mark.
    /// @param object the object's address, used as its identity only, or null
    void writeObjReference(const void* object);

    /// Writes bytes as they are, without a length.
    /// @param bytes the first byte; may be null when count is 0
    /// @param count how many bytes
    void writeBytes(const void* bytes, std::size_t count);

  protected:
    TQWriteStream();

    /// Appends bytes to the place where the archive goes.
    /// @param bytes the first byte, not null
    /// @param count how many bytes, at least 1
    virtual void put(const char* bytes, std::size_t count) = 0;

  private:
    template <class Unsigned>
    void writeUnsigned(Unsigned value);

    std::unordered_map<const void*, std::uint32_t> _references;
};
