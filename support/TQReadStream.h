#pragma once

#include "TQSystemWExport.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>

/// Reads a binary archive that a TQWriteStream wrote; subclasses say where the bytes come from.
///
/// The stream has a sticky failed state. The first fault (bytes that are not there, another block than
/// the one asked for, a reference to nothing) sets it; from then on every read yields zero or the empty
/// text and bytesLeft() is 0, so that readers need no test after each value and every loop ends.
class TQSYSTEMW_EXPORT TQReadStream {
  public:
    /// Answers of readObjReference() that stand for no object.
    enum ReferenceAnswer : int {
        ReferenceFault = -1, ///< the reference could not be read; the stream has failed
        NullReference = -2   ///< a null pointer was written; the stream is sound
    };

    TQReadStream(const TQReadStream&) = delete;
    TQReadStream& operator=(const TQReadStream&) = delete;
    virtual ~TQReadStream();

    /// Reads a class's version tag and answers the version. When the next bytes are not a complete tag of
    /// that very name nothing is consumed, the stream fails and the answer is -1.
    /// @param className the name of the class whose block must begin here; null is the empty name
    int version(const char* className);

    /// Reads one byte; every value but 0 is true.
    /// @param value receives the value, false after a fault
    void read(bool& value);

    /// Reads one byte.
    /// @param value receives the byte, 0 after a fault
    void read(char& value);

    /// Reads 4 bytes, two's complement.
    /// @param value receives the number, 0 after a fault
    void read(std::int32_t& value);

    /// Reads 4 bytes.
    /// @param value receives the number, 0 after a fault
    void read(std::uint32_t& value);

    /// Reads 8 bytes.
    /// @param value receives the number, bit for bit as it was written; 0 after a fault
    void read(double& value);

    /// Reads a counted string (a 4-byte length and the bytes) into a buffer and closes it with a NUL.
    /// A text that does not fit is consumed whole and cut to maximum - 1 characters. A length beyond the
    /// bytes that are left fails the stream and empties the buffer.
    /// @param buffer the place for the text; null drops the text
    /// @param maximum the buffer's size with the closing NUL; below 1 the buffer is not touched
    /// @param endsAtNul true: the text ends at the first NUL inside it, and what follows is dropped;
    ///        false: NULs inside the text are kept
    /// @return how many characters stand in the buffer before the closing NUL
    int read(char* buffer, int maximum, bool endsAtNul);

    /// Reads a counted string whole, NULs inside it included; empty after a fault.
    std::string readCString();

    /// Reads bytes as they are. When fewer are left the stream fails and the destination becomes zeros.
    /// @param bytes the place for the bytes; may be null when count is 0
    /// @param count how many bytes
    /// @return whether the bytes were there
    bool readBytes(void* bytes, std::size_t count);

    /// Reads a reference to an object.
    /// @param id receives the object's number, at least 1; 0 when there is no object
    /// @return 0 for an object met for the first time: its data follow, and the reader gives the object
    ///         made of them to setObjForReference(). The number, at least 1, for one met before: nothing
    ///         follows, and objForReference() knows it. NullReference for a null pointer. ReferenceFault
    ///         on a fault, also for a number that was never introduced or is introduced twice.
    int readObjReference(std::int32_t& id);

    /// Tells which object stands for a number that readObjReference() has introduced; any other number is
    /// ignored.
    /// @param object the object, not owned by the stream; may be null
    /// @param id its number
    void setObjForReference(void* object, std::int32_t id);

    /// The object that stands for a number, or null when it is unknown or not made yet. The stream does
    /// not own it.
    /// @param id the number
    void* objForReference(std::int32_t id) const;

    /// The word that tells readers why the archive is read; the stream itself gives it no meaning.
    std::uint32_t flags() const;

    /// Sets the word that tells readers why the archive is read.
    /// @param flags the new word
    void setFlags(std::uint32_t flags);

    /// The version that the owner of the bytes gave when the stream was made; blocks carry their own.
    int streamVersion() const;

    /// Whether a fault has happened.
    bool failed() const;

    /// Puts the stream into the failed state, for a reader that meets a value that cannot be right.
    void fail();

    /// Notes that a block has a version that its class does not know: nobody knows where it ends. Whoever
    /// reads what comes behind it is to ask hasUnknownBlock() before.
    void noteUnknownBlock() { _hasUnknownBlock = true; }

    /// Whether a block of an unknown version was met.
    bool hasUnknownBlock() const { return _hasUnknownBlock; }

    /// How many bytes are left to read; 0 once the stream has failed.
    std::uint64_t bytesLeft() const;

    /// Whether the bytes that are left can hold so many values of so many bytes; fails the stream when
    /// they cannot. To be asked before memory is taken for a count that was read.
    /// @param count how many values
    /// @param bytesEach the least number of bytes that one value takes
    bool canHold(std::uint64_t count, std::uint64_t bytesEach);

  protected:
    /// A sound stream.
    /// @param version the answer of streamVersion()
    /// @param flags the first value of flags()
    explicit TQReadStream(int version = 0, std::uint32_t flags = 0);

    /// How many bytes the source still has.
    virtual std::uint64_t sourceLeft() const = 0;

    /// Copies the next bytes and leaves the position as it is.
    /// @param bytes the place for the bytes, not null
    /// @param count how many bytes, 1 to sourceLeft()
    virtual void peek(char* bytes, std::size_t count) = 0;

    /// Moves the position on.
    /// @param count how many bytes, at most sourceLeft()
    virtual void skip(std::uint64_t count) = 0;

  private:
    template <class Unsigned>
    Unsigned readUnsigned();
    std::uint32_t readLength();
    int failReference();

    std::unordered_map<std::int32_t, void*> _objects;
    std::uint32_t _flags;
    int _version;
    bool _failed = false;
    bool _hasUnknownBlock = false;
};
