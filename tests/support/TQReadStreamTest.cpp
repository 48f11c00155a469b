#include "support/TQReadStream.h"

#include "tests/support/ArchiveBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <limits>
#include <string>

namespace {

using tqtest::bytes;
using tqtest::written;

/// A stream over bytes that it keeps.
struct Source {
    explicit Source(std::string text) : archive(std::move(text)), stream(archive.data(), archive.size()) {}

    std::string archive;
    TQReadMemStream stream;
};

template <class T>
T readOne(TQReadStream& stream, T before) {
    stream.read(before);
    return before;
}

/// One of everything that a stream can hold.
const std::string oneOfEverything = bytes({3, 'A', 'b', 'c', 0x34, 0x12}) + // version 0x1234 of "Abc"
                                    bytes({1}) +                            // true
                                    bytes({'Z'}) +                          //
                                    bytes({0xFE, 0xFF, 0xFF, 0xFF}) +       // -2
                                    bytes({0xEF, 0xCD, 0xAB, 0x89}) +       // 0x89ABCDEF
                                    bytes({0, 0, 0, 0, 0, 0, 0xF8, 0xBF}) + // -1.5
                                    bytes({2, 0, 0, 0, 'h', 'i'}) +         // a text for a buffer
                                    bytes({3, 0, 0, 0, 'y', 'e', 's'}) +    // a text of any length
                                    bytes({1, 0, 0, 0x80}) +                // a new object
                                    bytes({1, 0, 0, 0}) +                   // the same object
                                    bytes({0, 0, 0, 0}) +                   // null
                                    bytes({0xDE, 0xAD});                    // bytes

/// Where in oneOfEverything each value ends.
enum End : std::size_t {
    versionEnd = 6,
    boolEnd = 7,
    charEnd = 8,
    intEnd = 12,
    unsignedEnd = 16,
    doubleEnd = 24,
    bufferEnd = 30,
    textEnd = 37,
    newObjectEnd = 41,
    knownObjectEnd = 45,
    nullEnd = 49,
    bytesEnd = 51
};

/// Reads oneOfEverything, of which only the first bytes are there.
void readEverything(std::size_t length) {
    SCOPED_TRACE("of the archive " + std::to_string(length) + " bytes");
    const std::string archive = oneOfEverything.substr(0, length);
    TQReadMemStream stream(archive.data(), archive.size());

    EXPECT_EQ(stream.version("Abc"), length >= versionEnd ? 0x1234 : -1);
    EXPECT_EQ(readOne(stream, true), length >= boolEnd);
    EXPECT_EQ(readOne(stream, 'x'), length >= charEnd ? 'Z' : '\0');
    EXPECT_EQ(readOne(stream, std::int32_t{99}), length >= intEnd ? -2 : 0);
    EXPECT_EQ(readOne(stream, std::uint32_t{99}), length >= unsignedEnd ? 0x89ABCDEF : 0U);
    EXPECT_EQ(readOne(stream, 99.0), length >= doubleEnd ? -1.5 : 0.0);

    std::array<char, 8> buffer{'o', 'l', 'd'};
    EXPECT_EQ(stream.read(buffer.data(), 8, true), length >= bufferEnd ? 2 : 0);
    EXPECT_STREQ(buffer.data(), length >= bufferEnd ? "hi" : "");
    EXPECT_EQ(stream.readCString(), length >= textEnd ? "yes" : "");

    std::int32_t id = 99;
    EXPECT_EQ(stream.readObjReference(id), length >= newObjectEnd ? 0 : -1);
    EXPECT_EQ(id, length >= newObjectEnd ? 1 : 0);
    EXPECT_EQ(stream.readObjReference(id), length >= knownObjectEnd ? 1 : -1);
    EXPECT_EQ(id, length >= knownObjectEnd ? 1 : 0);
    EXPECT_EQ(stream.readObjReference(id), length >= nullEnd ? -2 : -1);
    EXPECT_EQ(id, 0);

    std::array<char, 2> raw{'o', 'l'};
    EXPECT_EQ(stream.readBytes(raw.data(), raw.size()), length >= bytesEnd);
    EXPECT_EQ(std::string(raw.data(), 2), length >= bytesEnd ? bytes({0xDE, 0xAD}) : bytes({0, 0}));

    EXPECT_EQ(stream.failed(), length < bytesEnd);
    EXPECT_EQ(stream.bytesLeft(), 0U);
}

/// Reads a counted string into a buffer of the given size whose bytes beyond it must stay as they are.
std::string readBuffer(TQReadStream& stream, int maximum, bool endsAtNul) {
    constexpr std::size_t size = 16;
    std::array<char, size> buffer{};
    buffer.fill('#');
    const int length = stream.read(buffer.data(), maximum, endsAtNul);
    EXPECT_LT(length, std::max(maximum, 1));
    const auto used = static_cast<std::size_t>(std::max(maximum, 0));
    EXPECT_EQ(std::count(buffer.begin() + used, buffer.end(), '#'), static_cast<std::ptrdiff_t>(size - used));
    if (maximum > 0) {
        EXPECT_EQ(buffer[static_cast<std::size_t>(length)], '\0');
    }
    return {buffer.data(), static_cast<std::size_t>(length)};
}

} // namespace

TEST(TQReadStream, ReadsOneOfEverythingAndFailsWhereverItIsCutOff) {
    ASSERT_EQ(oneOfEverything.size(), bytesEnd);
    for (std::size_t length = 0; length <= oneOfEverything.size(); ++length) {
        readEverything(length);
    }
}

TEST(TQReadStream, EveryNonZeroByteIsTrue) {
    Source source(bytes({0x00, 0x01, 0x80}));
    EXPECT_FALSE(readOne(source.stream, true));
    EXPECT_TRUE(readOne(source.stream, false));
    EXPECT_TRUE(readOne(source.stream, false));
}

TEST(TQReadStream, NumbersKeepTheirExtremesAndTheirBits) {
    TQWriteMemStream writer;
    writer.write(std::numeric_limits<std::int32_t>::min());
    writer.write(std::numeric_limits<std::int32_t>::max());
    writer.write(std::numeric_limits<std::uint32_t>::max());
    writer.write(-0.0);
    writer.write(std::numeric_limits<double>::denorm_min());
    writer.write(std::bit_cast<double>(0xFFF8000000000123ULL));
    Source source(written(writer));
    EXPECT_EQ(readOne(source.stream, std::int32_t{1}), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(readOne(source.stream, std::int32_t{1}), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(readOne(source.stream, std::uint32_t{1}), std::numeric_limits<std::uint32_t>::max());
    EXPECT_EQ(std::bit_cast<std::uint64_t>(readOne(source.stream, 1.0)), 0x8000000000000000ULL);
    EXPECT_EQ(readOne(source.stream, 1.0), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(std::bit_cast<std::uint64_t>(readOne(source.stream, 1.0)), 0xFFF8000000000123ULL);
    EXPECT_FALSE(source.stream.failed());
}

TEST(TQReadStream, VersionsAreSigned) {
    Source source(bytes({1, 'A', 0xFE, 0xFF}));
    EXPECT_EQ(source.stream.version("A"), -2);
    EXPECT_FALSE(source.stream.failed());
}

TEST(TQReadStream, NamesOfMoreThan255BytesAreReadAsTheyWereWritten) {
    const std::string name(300, 'n');
    TQWriteMemStream writer;
    writer.declareVersion(name.c_str(), 4);
    Source source(written(writer));
    EXPECT_EQ(source.stream.version(name.c_str()), 4);
    EXPECT_EQ(source.stream.bytesLeft(), 0U);
}

TEST(TQReadStream, AnotherBlockThanTheOneAskedForFailsTheStream) {
    for (const char* other : {"TQGriD", "TQGri", "TQGrids", "", "tqgrid"}) {
        SCOPED_TRACE(other);
        Source source(bytes({6, 'T', 'Q', 'G', 'r', 'i', 'd', 10, 0, 0, 0, 0}));
        EXPECT_EQ(source.stream.version(other), -1);
        EXPECT_TRUE(source.stream.failed());
        EXPECT_EQ(source.stream.version("TQGrid"), -1);
    }
}

TEST(TQReadStream, AnotherBlockThanTheOneAskedForIsNotConsumed) {
    class CountingStream : public TQReadStream {
      public:
        std::uint64_t consumed = 0;

      protected:
        std::uint64_t sourceLeft() const override { return 100; }
        void peek(char* data, std::size_t count) override { std::memset(data, 'x', count); }
        void skip(std::uint64_t count) override { consumed += count; }
    };
    CountingStream stream;
    EXPECT_EQ(stream.version("TQGrid"), -1);
    EXPECT_TRUE(stream.failed());
    EXPECT_EQ(stream.consumed, 0U);
}

TEST(TQReadStream, AFailedStreamReadsNothingMoreEvenIfBytesAreThere) {
    Source source(std::string(64, '\1'));
    source.stream.fail();
    EXPECT_TRUE(source.stream.failed());
    EXPECT_EQ(source.stream.bytesLeft(), 0U);
    EXPECT_FALSE(source.stream.canHold(0, 0));
    EXPECT_FALSE(source.stream.canHold(1, 1));
    EXPECT_FALSE(readOne(source.stream, true));
    EXPECT_EQ(readOne(source.stream, 'x'), '\0');
    EXPECT_EQ(readOne(source.stream, std::int32_t{1}), 0);
    EXPECT_EQ(readOne(source.stream, std::uint32_t{1}), 0U);
    EXPECT_EQ(readOne(source.stream, 1.0), 0.0);
    EXPECT_EQ(readBuffer(source.stream, 8, true), "");
    EXPECT_EQ(source.stream.readCString(), "");
    EXPECT_FALSE(source.stream.readBytes(nullptr, 0));
    std::int32_t id = 1;
    EXPECT_EQ(source.stream.readObjReference(id), -1);
    EXPECT_EQ(id, 0);
    EXPECT_EQ(source.stream.version("A"), -1);
}

TEST(TQReadStream, ACountedStringThatFitsIsReadWhole) {
    Source source(bytes({3, 0, 0, 0, 'a', 'b', 'c', 7}));
    EXPECT_EQ(readBuffer(source.stream, 4, true), "abc");
    EXPECT_EQ(source.stream.bytesLeft(), 1U);
}

TEST(TQReadStream, ACountedStringOfExactlyTheMaximumLosesItsLastCharacterToTheNul) {
    Source source(bytes({4, 0, 0, 0, 'a', 'b', 'c', 'd', 7}));
    EXPECT_EQ(readBuffer(source.stream, 4, true), "abc");
    EXPECT_EQ(source.stream.bytesLeft(), 1U);
}

TEST(TQReadStream, ACountedStringThatIsTooLongIsCutButConsumedWhole) {
    for (const bool endsAtNul : {false, true}) {
        Source source(bytes({26, 0, 0, 0}) + "abcdefghijklmnopqrstuvwxyz" + bytes({7}));
        EXPECT_EQ(readBuffer(source.stream, 4, endsAtNul), "abc");
        EXPECT_EQ(readOne(source.stream, 'x'), '\7');
        EXPECT_FALSE(source.stream.failed());
    }
}

TEST(TQReadStream, ABufferOfOneCharacterHoldsTheNulAlone) {
    Source source(bytes({2, 0, 0, 0, 'a', 'b'}));
    EXPECT_EQ(readBuffer(source.stream, 1, true), "");
    EXPECT_EQ(source.stream.bytesLeft(), 0U);
    EXPECT_FALSE(source.stream.failed());
}

TEST(TQReadStream, WithoutABufferACountedStringIsDropped) {
    for (const int maximum : {0, -5}) {
        Source source(bytes({2, 0, 0, 0, 'a', 'b', 7}));
        EXPECT_EQ(readBuffer(source.stream, maximum, true), "");
        EXPECT_EQ(source.stream.bytesLeft(), 1U);
    }
    Source source(bytes({2, 0, 0, 0, 'a', 'b', 7}));
    EXPECT_EQ(source.stream.read(nullptr, 16, true), 0);
    EXPECT_EQ(source.stream.bytesLeft(), 1U);
}

TEST(TQReadStream, TheFlagSaysWhetherACountedStringEndsAtItsFirstNul) {
    const std::string archive = bytes({5, 0, 0, 0, 'a', 0, 'b', 0, 'c', 7});
    Source ends(archive);
    EXPECT_EQ(readBuffer(ends.stream, 16, true), "a");
    EXPECT_EQ(ends.stream.bytesLeft(), 1U);
    Source keeps(archive);
    EXPECT_EQ(readBuffer(keeps.stream, 16, false), bytes({'a', 0, 'b', 0, 'c'}));
    EXPECT_EQ(keeps.stream.bytesLeft(), 1U);
}

TEST(TQReadStream, ACountedStringLongerThanTheRestFailsAndEmptiesTheBuffer) {
    for (const std::string& length :
         {bytes({3, 0, 0, 0}), bytes({0xFF, 0xFF, 0xFF, 0xFF}), bytes({0, 0, 0, 0x80})}) {
        Source source(length + "ab");
        EXPECT_EQ(readBuffer(source.stream, 8, true), "");
        EXPECT_TRUE(source.stream.failed());
    }
}

TEST(TQReadStream, ATextLongerThanTheRestFailsBeforeMemoryIsTaken) {
    Source source(bytes({0xFF, 0xFF, 0xFF, 0xFF, 'a', 'b'}));
    const std::string text = source.stream.readCString();
    EXPECT_EQ(text, "");
    EXPECT_LT(text.capacity(), 1000U);
    EXPECT_TRUE(source.stream.failed());
}

TEST(TQReadStream, ATextKeepsItsNuls) {
    Source source(bytes({3, 0, 0, 0, 'a', 0, 'b'}));
    EXPECT_EQ(source.stream.readCString(), bytes({'a', 0, 'b'}));
}

TEST(TQReadStream, MissingBytesBecomeZeros) {
    Source source("abc");
    std::array<char, 4> buffer{'o', 'l', 'd', '!'};
    EXPECT_FALSE(source.stream.readBytes(buffer.data(), buffer.size()));
    EXPECT_EQ(buffer, (std::array<char, 4>{}));
    EXPECT_TRUE(source.stream.failed());
}

TEST(TQReadStream, NoBytesCanAlwaysBeReadFromASoundStream) {
    Source source("");
    EXPECT_TRUE(source.stream.readBytes(nullptr, 0));
    EXPECT_FALSE(source.stream.failed());
}

TEST(TQReadStream, ACountThatTheRestCannotHoldFailsTheStream) {
    constexpr std::uint64_t huge = std::numeric_limits<std::uint64_t>::max();
    struct Case {
        std::uint64_t count;
        std::uint64_t bytesEach;
        bool fits;
    };
    for (const Case& each : {Case{2, 8, true}, Case{16, 1, true}, Case{0, 8, true}, Case{huge, 0, true},
                             Case{17, 1, false}, Case{2, 9, false}, Case{huge, 8, false},
                             Case{1, huge, false}, Case{0x2000000000000001ULL, 8, false}}) {
        SCOPED_TRACE(std::to_string(each.count) + " of " + std::to_string(each.bytesEach));
        Source source(std::string(16, 'x'));
        EXPECT_EQ(source.stream.canHold(each.count, each.bytesEach), each.fits);
        EXPECT_EQ(source.stream.failed(), !each.fits);
    }
}

TEST(TQReadStream, ReferencesLeadToTheObjectsThatTheReaderMade) {
    int first = 0;
    int second = 0;
    TQWriteMemStream writer;
    for (const int* object : {&first, &second, &first, &second}) {
        writer.writeObjReference(object);
    }
    Source source(written(writer));
    std::int32_t id = 0;
    ASSERT_EQ(source.stream.readObjReference(id), 0);
    ASSERT_EQ(id, 1);
    EXPECT_EQ(source.stream.objForReference(1), nullptr);
    source.stream.setObjForReference(&first, id);
    ASSERT_EQ(source.stream.readObjReference(id), 0);
    ASSERT_EQ(id, 2);
    source.stream.setObjForReference(&second, id);
    EXPECT_EQ(source.stream.readObjReference(id), 1);
    EXPECT_EQ(source.stream.objForReference(id), &first);
    EXPECT_EQ(source.stream.readObjReference(id), 2);
    EXPECT_EQ(source.stream.objForReference(id), &second);
    EXPECT_FALSE(source.stream.failed());
}

TEST(TQReadStream, ANullReferenceIsNoFault) {
    Source source(bytes({0, 0, 0, 0, 7}));
    std::int32_t id = 99;
    EXPECT_EQ(source.stream.readObjReference(id), TQReadStream::NullReference);
    EXPECT_EQ(id, 0);
    EXPECT_FALSE(source.stream.failed());
    EXPECT_EQ(source.stream.bytesLeft(), 1U);
}

TEST(TQReadStream, AReferenceToAnObjectNeverMetFails) {
    Source source(bytes({1, 0, 0, 0x80}) + bytes({2, 0, 0, 0}));
    std::int32_t id = 99;
    EXPECT_EQ(source.stream.readObjReference(id), 0);
    EXPECT_EQ(source.stream.readObjReference(id), TQReadStream::ReferenceFault);
    EXPECT_EQ(id, 0);
    EXPECT_TRUE(source.stream.failed());
}

TEST(TQReadStream, AnObjectIntroducedTwiceFails) {
    Source source(bytes({1, 0, 0, 0x80}) + bytes({1, 0, 0, 0x80}));
    std::int32_t id = 99;
    EXPECT_EQ(source.stream.readObjReference(id), 0);
    EXPECT_EQ(source.stream.readObjReference(id), TQReadStream::ReferenceFault);
    EXPECT_TRUE(source.stream.failed());
}

TEST(TQReadStream, ANewObjectWithoutANumberFails) {
    Source source(bytes({0, 0, 0, 0x80}));
    std::int32_t id = 99;
    EXPECT_EQ(source.stream.readObjReference(id), TQReadStream::ReferenceFault);
    EXPECT_EQ(id, 0);
    EXPECT_TRUE(source.stream.failed());
}

TEST(TQReadStream, ObjectsOfNumbersThatWereNotMetAreIgnored) {
    int object = 0;
    Source source("");
    for (const std::int32_t id : {-1, 0, 1}) {
        source.stream.setObjForReference(&object, id);
        EXPECT_EQ(source.stream.objForReference(id), nullptr);
    }
}

TEST(TQReadStream, FlagsAreKeptAsTheyWereSet) {
    TQReadMemStream stream("", 0, 3, 0x41);
    EXPECT_EQ(stream.streamVersion(), 3);
    EXPECT_EQ(stream.flags(), 0x41U);
    stream.setFlags(0x80000009);
    EXPECT_EQ(stream.flags(), 0x80000009U);
}
