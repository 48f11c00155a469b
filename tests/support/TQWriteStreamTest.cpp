#include "support/TQWriteStream.h"

#include "tests/support/ArchiveBytes.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstddef>
#include <limits>
#include <string>
#include <string_view>

namespace {

using tqtest::bytes;

/// A sink of its own, to show what a subclass has to give.
class RecordingStream : public TQWriteStream {
  public:
    const std::string& record() const { return _record; }

  protected:
    void put(const char* data, std::size_t count) override {
        EXPECT_GT(count, 0U);
        _record.append(data, count);
    }

  private:
    std::string _record;
};

template <class T>
std::string writtenAs(T value) {
    RecordingStream stream;
    stream.write(value);
    return stream.record();
}

std::string tagOf(const char* className, std::int16_t version) {
    RecordingStream stream;
    stream.declareVersion(className, version);
    return stream.record();
}

template <class T>
concept Writable = requires(TQWriteStream& stream, T value) {
    stream.write(value);
};

enum class SomeEnumeration { value };

static_assert(Writable<bool> && Writable<char> && Writable<std::int32_t> && Writable<std::uint32_t> &&
              Writable<double> && Writable<const char*> && Writable<char*> && Writable<std::nullptr_t>);
static_assert(!Writable<signed char> && !Writable<unsigned char> && !Writable<short> &&
              !Writable<unsigned short> && !Writable<long long> && !Writable<unsigned long long> &&
              !Writable<std::size_t> && !Writable<float> && !Writable<long double> && !Writable<char16_t> &&
              !Writable<SomeEnumeration> && !Writable<std::string> && !Writable<std::string_view> &&
              !Writable<int*> && !Writable<void*> && !Writable<const char16_t*>);

} // namespace

TEST(TQWriteStream, BoolIsOneByteOfZeroOrOne) {
    EXPECT_EQ(writtenAs(false), bytes({0x00}));
    EXPECT_EQ(writtenAs(true), bytes({0x01}));
}

TEST(TQWriteStream, CharIsItsByte) {
    EXPECT_EQ(writtenAs('A'), bytes({0x41}));
    EXPECT_EQ(writtenAs(static_cast<char>(-1)), bytes({0xFF}));
}

TEST(TQWriteStream, SignedIntegersAreFourBytesLowestFirst) {
    EXPECT_EQ(writtenAs(std::int32_t{0x01020304}), bytes({0x04, 0x03, 0x02, 0x01}));
    EXPECT_EQ(writtenAs(std::int32_t{-2}), bytes({0xFE, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(writtenAs(std::numeric_limits<std::int32_t>::min()), bytes({0x00, 0x00, 0x00, 0x80}));
}

TEST(TQWriteStream, UnsignedIntegersAreFourBytesLowestFirst) {
    EXPECT_EQ(writtenAs(std::uint32_t{0x89ABCDEF}), bytes({0xEF, 0xCD, 0xAB, 0x89}));
}

TEST(TQWriteStream, DoublesAreTheirIeeeBytesLowestFirst) {
    EXPECT_EQ(writtenAs(1.0), bytes({0, 0, 0, 0, 0, 0, 0xF0, 0x3F}));
    EXPECT_EQ(writtenAs(-0.0), bytes({0, 0, 0, 0, 0, 0, 0, 0x80}));
    EXPECT_EQ(writtenAs(0.1), bytes({0x9A, 0x99, 0x99, 0x99, 0x99, 0x99, 0xB9, 0x3F}));
    EXPECT_EQ(writtenAs(-std::numeric_limits<double>::infinity()), bytes({0, 0, 0, 0, 0, 0, 0xF0, 0xFF}));
    EXPECT_EQ(writtenAs(std::bit_cast<double>(0x7FF8000000000123ULL)),
              bytes({0x23, 0x01, 0, 0, 0, 0, 0xF8, 0x7F}));
}

TEST(TQWriteStream, ACStringIsItsLengthAndItsBytesWithoutNul) {
    EXPECT_EQ(writtenAs("abc"), bytes({3, 0, 0, 0, 'a', 'b', 'c'}));
    EXPECT_EQ(writtenAs("\xC3\xA9"), bytes({2, 0, 0, 0, 0xC3, 0xA9}));
    EXPECT_EQ(writtenAs(""), bytes({0, 0, 0, 0}));
    EXPECT_EQ(writtenAs(std::string(300, 'x').c_str()), bytes({0x2C, 0x01, 0, 0}) + std::string(300, 'x'));
}

TEST(TQWriteStream, ANullCStringIsTheEmptyText) {
    EXPECT_EQ(writtenAs(static_cast<const char*>(nullptr)), bytes({0, 0, 0, 0}));
    EXPECT_EQ(writtenAs(nullptr), bytes({0, 0, 0, 0}));
}

TEST(TQWriteStream, AVersionTagIsLengthNameAndSixteenBits) {
    EXPECT_EQ(tagOf("TQGrid", 10), bytes({6, 'T', 'Q', 'G', 'r', 'i', 'd', 0x0A, 0x00}));
    EXPECT_EQ(tagOf("A", 0x1234), bytes({1, 'A', 0x34, 0x12}));
    EXPECT_EQ(tagOf("A", -2), bytes({1, 'A', 0xFE, 0xFF}));
    EXPECT_EQ(tagOf(nullptr, 1), bytes({0, 1, 0}));
}

TEST(TQWriteStream, AVersionTagKeepsTheFirst255BytesOfALongName) {
    EXPECT_EQ(tagOf(std::string(256, 'n').c_str(), 1), bytes({0xFF}) + std::string(255, 'n') + bytes({1, 0}));
}

TEST(TQWriteStream, ReferencesAreNumberedFromOneAndMarkedAtFirstUse) {
    const int first = 0;
    const int second = 0;
    RecordingStream stream;
    stream.writeObjReference(&first);
    stream.writeObjReference(&second);
    stream.writeObjReference(&first);
    stream.writeObjReference(nullptr);
    stream.writeObjReference(&second);
    EXPECT_EQ(stream.record(), bytes({1, 0, 0, 0x80}) + bytes({2, 0, 0, 0x80}) + bytes({1, 0, 0, 0}) +
                                   bytes({0, 0, 0, 0}) + bytes({2, 0, 0, 0}));
}

TEST(TQWriteStream, RawBytesHaveNoLength) {
    RecordingStream stream;
    stream.writeBytes("\0\1\2", 3);
    stream.writeBytes(nullptr, 0);
    EXPECT_EQ(stream.record(), bytes({0, 1, 2}));
}
