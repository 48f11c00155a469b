#include "tools/tqproj/LineReader.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <ios>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct ReadLine {
    std::string text;
    std::string end;
    bool isTooLong = false;

    bool operator==(const ReadLine&) const = default;
};

std::vector<ReadLine> takeAll(LineReader& reader) {
    std::vector<ReadLine> lines;
    LineReader::Line line;
    while (reader.takeLine(line)) {
        lines.push_back({std::string(line.text), std::string(line.end), line.isTooLong});
    }
    return lines;
}

std::vector<ReadLine> readAll(LineReader& reader) {
    std::vector<ReadLine> lines;
    bool mayHaveMore = true;
    while (mayHaveMore) {
        mayHaveMore = reader.fill();
        for (const ReadLine& line : takeAll(reader)) {
            lines.push_back(line);
        }
    }
    return lines;
}

std::vector<ReadLine> linesOf(const std::string& text, std::size_t limit = 100) {
    std::stringbuf source(text);
    LineReader reader(source, limit);
    return readAll(reader);
}

// Hands out its pieces one at a time, as a pipe does, and may fail at the end.
class Pipe : public std::streambuf {
  public:
    explicit Pipe(std::vector<std::string> pieces, bool fails = false)
        : _pieces(std::move(pieces)), _fails(fails) {}

  protected:
    int_type underflow() override {
        if (_next == _pieces.size()) {
            if (_fails) {
                throw std::ios_base::failure("broken", std::error_code(EIO, std::generic_category()));
            }
            return traits_type::eof();
        }
        std::string& piece = _pieces[_next++];
        setg(piece.data(), piece.data(), piece.data() + piece.size());
        return traits_type::to_int_type(piece.front());
    }

  private:
    std::vector<std::string> _pieces;
    std::size_t _next = 0;
    bool _fails;
};

// Gives the same character as often as it was told to.
class Repetition : public std::streambuf {
  public:
    Repetition(char character, std::size_t count) : _block(1 << 16, character), _left(count) {}

  protected:
    int_type underflow() override {
        if (_left == 0) {
            return traits_type::eof();
        }
        const std::size_t count = std::min(_left, _block.size());
        _left -= count;
        setg(_block.data(), _block.data(), _block.data() + count);
        return traits_type::to_int_type(_block.front());
    }

  private:
    std::string _block;
    std::size_t _left;
};

TEST(LineReader, EmptyInputHasNoLine) { EXPECT_TRUE(linesOf("").empty()); }

TEST(LineReader, LinesKeepTheirEnds) {
    const std::vector<ReadLine> expected{{"a", "\n"}, {"", "\n"}, {"b c", "\r\n"}, {"", "\r\n"}, {"d", ""}};
    EXPECT_EQ(linesOf("a\n\nb c\r\n\r\nd"), expected);
}

TEST(LineReader, CarriageReturnInsideALineIsText) {
    const std::vector<ReadLine> expected{{"a\rb", "\n"}, {"c\r", "\r\n"}, {"d", "\r"}};
    EXPECT_EQ(linesOf("a\rb\nc\r\r\nd\r"), expected);
}

TEST(LineReader, NulIsText) {
    const std::string line("a\0b", 3);
    EXPECT_EQ(linesOf(line + "\n"), (std::vector<ReadLine>{{line, "\n"}}));
}

TEST(LineReader, LinesBeyondTheLimitAreDroppedAndReported) {
    const std::vector<ReadLine> expected{
        {std::string(100, 'x'), "\n"}, {"", "\n", true}, {"a", "\n"}, {"", "\r\n", true}, {"", "", true}};
    EXPECT_EQ(linesOf(std::string(100, 'x') + "\n" + std::string(101, 'x') + "\na\n" + std::string(500, 'x') +
                      "\r\n" + std::string(101, 'x')),
              expected);
}

TEST(LineReader, LimitHoldsWhereverTheBlocksEnd) {
    for (std::size_t length = 95; length < 110; ++length) {
        for (const std::string end : {"\n", "\r\n"}) {
            std::vector<std::string> pieces;
            const std::string text = std::string(length, 'x') + end + "next\n";
            for (const char character : text) {
                pieces.emplace_back(1, character);
            }
            Pipe pipe(pieces);
            LineReader reader(pipe, 100);
            const bool isTooLong = length > 100;
            const std::vector<ReadLine> expected{{isTooLong ? "" : std::string(length, 'x'), end, isTooLong},
                                                 {"next", "\n"}};
            EXPECT_EQ(readAll(reader), expected) << length;
        }
    }
}

TEST(LineReader, LineOfManyBlocksIsDroppedInBoundedMemory) {
    constexpr std::size_t Length = std::size_t{64} << 20;
    Repetition source('x', Length);
    LineReader reader(source, 1000);
    EXPECT_EQ(readAll(reader), (std::vector<ReadLine>{{"", "", true}}));
    EXPECT_EQ(reader.bytesRead(), Length);
}

TEST(LineReader, LinesOfManyBlocksComeWhole) {
    std::string text;
    std::vector<ReadLine> expected;
    for (int number = 0; number < 50000; ++number) {
        expected.push_back({std::to_string(number * 7919), "\n"});
        text += expected.back().text + "\n";
    }
    EXPECT_EQ(linesOf(text), expected);
}

TEST(LineReader, LinesAreHandedOutAsTheyArrive) {
    Pipe pipe({"a\nb", "c\n", "d"});
    LineReader reader(pipe);
    EXPECT_TRUE(reader.fill());
    EXPECT_EQ(takeAll(reader), (std::vector<ReadLine>{{"a", "\n"}}));
    EXPECT_TRUE(reader.fill());
    EXPECT_EQ(takeAll(reader), (std::vector<ReadLine>{{"bc", "\n"}}));
    EXPECT_TRUE(reader.fill());
    EXPECT_TRUE(takeAll(reader).empty());
    EXPECT_FALSE(reader.fill());
    EXPECT_EQ(takeAll(reader), (std::vector<ReadLine>{{"d", ""}}));
    EXPECT_FALSE(reader.fill());
    EXPECT_FALSE(reader.error());
}

TEST(LineReader, ManyLinesComeTogetherAsFarAsTheyFit) {
    std::stringbuf source("1\r\n22\n\n4444\n55555\n6");
    LineReader reader(source, 100);
    LineReader::Line line;
    EXPECT_TRUE(reader.takeLines(9).empty()) << "nothing has been read";
    reader.fill();
    EXPECT_EQ(reader.takeLines(9), "1\r\n22\n\n");
    EXPECT_EQ(reader.takeLines(5), "4444\n");
    EXPECT_TRUE(reader.takeLines(5).empty()) << "the next line is longer";
    ASSERT_TRUE(reader.takeLine(line));
    EXPECT_EQ(line.text, "55555");
    EXPECT_TRUE(reader.takeLines(9).empty()) << "the last line has no end";
    EXPECT_FALSE(reader.fill());
    EXPECT_TRUE(reader.takeLines(9).empty());
    EXPECT_EQ(takeAll(reader), (std::vector<ReadLine>{{"6", ""}}));
}

TEST(LineReader, LineThatIsTooLongComesAlone) {
    Pipe pipe({"a\n" + std::string(90, 'x'), std::string(90, 'x'), "x\nb\n"});
    LineReader reader(pipe, 100);
    reader.fill();
    EXPECT_EQ(reader.takeLines(100), "a\n");
    reader.fill();
    EXPECT_TRUE(reader.takeLines(100).empty());
    reader.fill();
    EXPECT_TRUE(reader.takeLines(100).empty());
    LineReader::Line line;
    ASSERT_TRUE(reader.takeLine(line));
    EXPECT_TRUE(line.isTooLong);
    EXPECT_EQ(reader.takeLines(100), "b\n");
}

TEST(LineReader, TellsWhetherMoreHasCome) {
    std::stringbuf source(std::string(std::size_t{1} << 20, '\n'));
    LineReader reader(source);
    EXPECT_TRUE(reader.hasInput());
    while (reader.fill()) {
        takeAll(reader);
    }
    EXPECT_FALSE(reader.hasInput());
    Pipe pipe({"a\n"});
    EXPECT_FALSE(LineReader(pipe).hasInput()) << "who asks a pipe may have to wait";
}

TEST(LineReader, ReadErrorDropsTheLineThatItCutsOff) {
    Pipe pipe({"1 2\n3 4"}, true);
    LineReader reader(pipe);
    EXPECT_EQ(readAll(reader), (std::vector<ReadLine>{{"1 2", "\n"}}));
    EXPECT_EQ(reader.error(), std::errc::io_error);
}

} // namespace
