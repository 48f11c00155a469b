#include "tools/tqproj/PointFilter.h"

#include "projection/TQProjection.h"
#include "support/TQMessages.h"
#include "tests/tools/CommandCase.h"
#include "tests/tools/ProjectionFiles.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/PointConverter.h"
#include "tools/tqproj/ProjectionOperation.h"
#include "tools/tqproj/ProjectionResolver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <memory>
#include <new>
#include <random>
#include <sstream>
#include <string>
#include <string_view>

// What comes out of several jobs beside what comes out when every line is converted by itself.

namespace {

constexpr int kJobs[] = {1, 2, 8};

/// An operation that cannot be copied, so that its points are converted one by one.
struct OneByOne : PointOperation {
    const PointOperation& operation;

    explicit OneByOne(const PointOperation& each) : operation(each) {}

    std::string convert(const TQPoint& in, TQPoint& out) const override { return operation.convert(in, out); }

    TQPoint atNearestTurn(const TQPoint& point) const override { return operation.atNearestTurn(point); }
};

/// Everything that the user gets to see.
struct Outcome {
    std::string out;
    std::string messages;
    ExitCode exitCode;

    bool operator==(const Outcome&) const = default;
};

/// Hands out the lines of a text in pieces of a size, as a pipe does.
class Pieces : public std::streambuf {
  public:
    Pieces(std::string text, std::size_t size) : _text(std::move(text)), _size(size) {}

  protected:
    int_type underflow() override {
        if (_next == _text.size()) {
            return traits_type::eof();
        }
        char* const begin = _text.data() + _next;
        _next = std::min(_next + _size, _text.size());
        setg(begin, begin, _text.data() + _next);
        return traits_type::to_int_type(*begin);
    }

  private:
    std::string _text;
    std::size_t _size;
    std::size_t _next = 0;
};

Outcome outcomeOf(const PointOperation& operation, std::streambuf& source, int jobs,
                  const CoordinateText& input = NumberFormat(3)) {
    CommandCase surroundings;
    FilterOptions options;
    options.jobs = jobs;
    LibraryMessages messages;
    PointConverter converter(operation, messages, input, NumberFormat(3));
    const ExitCode exitCode =
        PointFilter(options, converter, messages, source, surroundings.output, surroundings.diagnostics)
            .run();
    return {surroundings.out(), surroundings.messages(), exitCode};
}

Outcome outcomeOf(const PointOperation& operation, const std::string& text, int jobs,
                  const CoordinateText& input = NumberFormat(3)) {
    std::stringbuf source(text);
    return outcomeOf(operation, source, jobs, input);
}

void expectAsOneByOne(const PointOperation& operation, const std::string& text,
                      const CoordinateText& input = NumberFormat(3)) {
    const Outcome expected = outcomeOf(OneByOne(operation), text, 1, input);
    for (const int jobs : kJobs) {
        const Outcome outcome = outcomeOf(operation, text, jobs, input);
        // Not with EXPECT_EQ, which would print megabytes.
        EXPECT_TRUE(outcome.out == expected.out) << jobs;
        EXPECT_TRUE(outcome.messages == expected.messages) << jobs << "\n"
                                                           << outcome.messages.substr(0, 1000);
        EXPECT_EQ(outcome.exitCode, expected.exitCode) << jobs;
    }
}

/// Doubles both numbers of a point. Refuses a first one above 100, and says so of one above 200; has
/// something to say of a point that it converts when the first is 50.
struct Doubled : PointOperation {
    std::string convert(const TQPoint& in, TQPoint& out) const override {
        if (in.x > 200.0) {
            tq_perrorf("Doubled: %.0f is much too great\n", in.x);
        }
        if (in.x == 50.0) {
            tq_perrorf("Doubled: 50 beside %.0f\n", in.y);
        }
        out = {2.0 * in.x, 2.0 * in.y};
        return in.x > 100.0 ? "too great" : "";
    }

    bool accepts(const TQPoint& point) const override { return point.y >= -1000.0; }

    std::unique_ptr<PointOperation> copy() const override { return std::make_unique<Doubled>(); }
};

/// Longitudes and latitudes, and every kind of line that holds none.
std::string mixedLines(int count) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> longitude(-180.0, 360.0);
    std::uniform_real_distribution<double> latitude(-80.0, 84.0);
    const char* const odd[] = {"# a comment",
                               "",
                               " \t",
                               "x,0,no number",
                               "1",
                               "0 90 a pole",
                               "0 -90 pole",
                               "0 91",
                               "nan 1 rest",
                               "1e999 2",
                               "1 1e999",
                               "1e300 1e300",
                               "-0 -0.0",
                               "+12 , 4.5\tplus",
                               "\xEF\xBB\xBF"
                               "1 2 mark",
                               "  7.5,8.5, blanks",
                               "0x10 1"};
    std::string text;
    for (int line = 0; line < count; ++line) {
        if (line % 37 == 0) {
            text += odd[static_cast<std::size_t>(line / 37) % std::size(odd)];
        } else {
            char point[80];
            std::snprintf(point, sizeof point, "%.9f %.9f point %d", longitude(random), latitude(random),
                          line);
            text += point;
        }
        text += line % 5 == 0 ? "\r\n" : "\n";
    }
    return text;
}

class ProjectionJobs : public testing::TestWithParam<const char*> {
  protected:
    std::unique_ptr<TQProjection> projection() {
        const std::string parameter = GetParam();
        const bool isFile = parameter.find('\n') != std::string::npos;
        const std::string argument = isFile ? _directory.fileWith("test.proj", parameter).utf8() : parameter;
        return _resolver.resolve({argument});
    }

  private:
    TemporaryDirectory _directory;
    LibraryMessages _messages;
    ProjectionResolver _resolver{_messages}; // owns the ellipsoids of projections known by name
};

TEST_P(ProjectionJobs, ConvertMixedLinesAsOneByOne) {
    const std::unique_ptr<TQProjection> through = projection();
    ASSERT_NE(through, nullptr);
    const ProjectionOperation forward(*through, Direction::Forward, BeyondDomain::Refuse);
    expectAsOneByOne(forward, mixedLines(100001) + "1 2 no line end", AngularText(TQUnitDegree, {}));
}

TEST_P(ProjectionJobs, ConvertMixedLinesBackAsOneByOne) {
    const std::unique_ptr<TQProjection> through = projection();
    ASSERT_NE(through, nullptr);
    const ProjectionOperation forward(*through, Direction::Forward, BeyondDomain::Refuse);
    const std::string plane = outcomeOf(forward, mixedLines(100001), 2, AngularText(TQUnitDegree, {})).out;
    expectAsOneByOne(ProjectionOperation(*through, Direction::Inverse, BeyondDomain::Refuse),
                     plane + mixedLines(1000));
}

INSTANTIATE_TEST_SUITE_P(Projections, ProjectionJobs,
                         testing::Values(projectionfiles::GctpMercator, projectionfiles::Utm31North,
                                         "EPSG:2154", "CH1903+ / LV95"));

TEST(PointFilterJobs, MessagesComeInOrderAndNameTheirLines) {
    std::string text;
    std::string expected;
    for (int number = 1; number <= 60000; ++number) {
        const bool isBad = number % 9973 == 0;
        text += isBad ? "201 1\n" : "1 2\n";
        if (isBad) {
            expected += "<stdin>:" + std::to_string(number) + ": Doubled: 201 is much too great\n";
        }
    }
    for (const int jobs : kJobs) {
        EXPECT_EQ(outcomeOf(Doubled(), text, jobs).messages, expected) << jobs;
    }
}

TEST(PointFilterJobs, WhatTheLibrarySaysOfConvertedPointsComesAsOneByOne) {
    std::string text;
    for (int number = 0; number < 60000; ++number) {
        text += number % 7001 == 5 ? "50 " + std::to_string(number / 14002) + "\n" : "1 2\n";
        text += number % 11003 == 7 ? "x 1\n150 1\n" : "3 -1001\n";
    }
    expectAsOneByOne(Doubled(), text);
}

TEST(PointFilterJobs, BlocksMayEndAtAnyByteOfALine) {
    std::string lines;
    while (lines.size() < 3 * BlockQueue::blockSize) {
        lines += "1 2 a\r\n\n3,4\n# c\r\n\r\n5 6\r\r\n";
    }
    for (std::size_t shift = 0; shift < 40; ++shift) {
        expectAsOneByOne(Doubled(), "#" + std::string(shift, '.') + "\n" + lines);
    }
}

TEST(PointFilterJobs, LinesThatFitIntoNoBlockKeepTheirPlace) {
    const auto longLine = [](std::size_t length) { return "1 2 " + std::string(length, 'x'); };
    std::string text;
    for (const std::size_t length :
         {BlockQueue::blockSize - 5, BlockQueue::blockSize - 4, BlockQueue::blockSize,
          LineReader::defaultLineLimit - 4, LineReader::defaultLineLimit, 2 * LineReader::defaultLineLimit}) {
        text += mixedLines(100) + longLine(length) + "\r\nx\n" + longLine(length) + "\n";
    }
    expectAsOneByOne(Doubled(), text + longLine(LineReader::defaultLineLimit));
}

TEST(PointFilterJobs, FewLinesAndNoneComeOutToo) {
    for (const char* text : {"", "\n", "\r\n", "1 2", "1 2\n", "1 2\r\n3 4", "x", "#\n#", "1 2\r"}) {
        SCOPED_TRACE(text);
        expectAsOneByOne(Doubled(), text);
    }
}

TEST(PointFilterJobs, PiecesOfAPipeComeOutAsTheWhole) {
    const std::string text = mixedLines(20000);
    const Outcome expected = outcomeOf(OneByOne(Doubled()), text, 1);
    for (const std::size_t size : {7, 4096, 100000}) {
        Pieces source(text, size);
        EXPECT_TRUE(outcomeOf(Doubled(), source, 8) == expected) << size;
    }
}

TEST(PointFilterJobs, SeveralFilesComeOutInOrderWithMissingLineEnds) {
    for (const int jobs : kJobs) {
        CommandCase surroundings;
        FilterOptions options;
        options.jobs = jobs;
        for (const char* const bytes : {"1 2 a\r\n3 4 b", "", "5 6 c\nx", "7 8 d\n"}) {
            const std::string name = std::to_string(options.files.size());
            options.files.push_back(surroundings.directory.fileWith(name, bytes).utf8());
        }
        std::stringbuf none;
        LibraryMessages messages;
        const Doubled operation;
        PointConverter converter(operation, messages, NumberFormat(0), NumberFormat(0));
        EXPECT_EQ(
            PointFilter(options, converter, messages, none, surroundings.output, surroundings.diagnostics)
                .run(),
            ExitCode::Incomplete);
        EXPECT_EQ(surroundings.out(), "2 4 a\r\n6 8 b\r\n10 12 c\n* *\n14 16 d\n");
        EXPECT_EQ(surroundings.messages(), options.files[2] + ":2: 'x' is not a number\n");
    }
}

/// Runs out of memory at a point, in whatever thread it is converted.
struct Exhausting : PointOperation {
    std::string convert(const TQPoint& in, TQPoint& out) const override {
        if (in.x == 77.0) {
            throw std::bad_alloc();
        }
        out = in;
        return {};
    }

    std::unique_ptr<PointOperation> copy() const override { return std::make_unique<Exhausting>(); }
};

TEST(PointFilterJobs, MemoryThatRunsOutInAnyThreadIsThrownToTheCaller) {
    std::string text;
    for (int number = 0; number < 200000; ++number) {
        text += number > 100000 ? "77 1\n" : "1 2\n";
    }
    for (const int jobs : kJobs) {
        EXPECT_THROW(outcomeOf(Exhausting(), text, jobs), std::bad_alloc) << jobs;
    }
}

/// Counts its copies, which convert.
struct Counted : Doubled {
    std::atomic<int>& copies;

    explicit Counted(std::atomic<int>& count) : copies(count) {}

    std::unique_ptr<PointOperation> copy() const override {
        ++copies;
        return std::make_unique<Doubled>();
    }
};

TEST(PointFilterJobs, FewLinesNeedNoThreadAndManyNoMoreThanTheJobs) {
    std::atomic<int> copies = 0;
    outcomeOf(Counted(copies), "1 2\n3 4\n", 8);
    EXPECT_EQ(copies, 1);
    copies = 0;
    outcomeOf(Counted(copies), mixedLines(100000), 3);
    EXPECT_EQ(copies, 3);
}

} // namespace
