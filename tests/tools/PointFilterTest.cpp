#include "tools/tqproj/PointFilter.h"

#include "support/TQMessages.h"
#include "tests/tools/CommandCase.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/LineReader.h"
#include "tools/tqproj/PointConverter.h"
#include "tools/tqproj/PointOperation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>

namespace {

// Doubles both numbers of a point, unless the first is above 100, and may have a word to say.
struct Doubled : PointOperation {
    std::string message;

    std::string convert(const TQPoint& in, TQPoint& out) const override {
        tq_perror(message.c_str());
        out = {2.0 * in.x, 2.0 * in.y};
        return in.x > 100.0 ? "too great" : "";
    }
};

struct FilterCase : CommandCase {
    FilterOptions options;
    Doubled operation;

    ExitCode run(const std::string& standardInput = {}) { return runInto(output, standardInput); }

    ExitCode runInto(OutputBuffer& results, const std::string& standardInput = {}) {
        std::stringbuf source(standardInput);
        LibraryMessages libraryMessages;
        PointConverter converter(operation, libraryMessages, NumberFormat(0), NumberFormat(0));
        return PointFilter(options, converter, libraryMessages, source, results, diagnostics).run();
    }

    void addFile(const std::string& name, const std::string& bytes) {
        options.files.push_back(directory.fileWith(name, bytes).utf8());
    }
};

TEST(PointFilter, ConvertsTheStandardInputWhenThereIsNoFile) {
    FilterCase test;
    EXPECT_EQ(test.run("1 2 a\n3,4,b\n"), ExitCode::Success);
    EXPECT_EQ(test.out(), "2 4 a\n6,8,b\n");
    EXPECT_EQ(test.messages(), "");
}

TEST(PointFilter, BlankLinesAndCommentsPassUnchanged) {
    const std::string text = "# 1, 2\n\n \t\n  # c\n\xEF\xBB\xBF# d\r\n";
    FilterCase test;
    EXPECT_EQ(test.run(text), ExitCode::Success);
    EXPECT_EQ(test.out(), text);
}

TEST(PointFilter, LineEndsStayAsTheyAre) {
    FilterCase test;
    EXPECT_EQ(test.run("1,2,a\r\n3 4\n5\t6\tb"), ExitCode::Success);
    EXPECT_EQ(test.out(), "2,4,a\r\n6 8\n10\t12\tb");
}

TEST(PointFilter, IncompleteComeOutWithStarsAndAllOthersConverted) {
    FilterCase test;
    EXPECT_EQ(test.run("1 2 a\nx,3,b\r\n4 5 c\n 1\n101 7 d\n8 9 e"), ExitCode::Incomplete);
    EXPECT_EQ(test.out(), "2 4 a\n*,*,b\r\n8 10 c\n * *\n* * d\n16 18 e");
    EXPECT_EQ(test.messages(), "<stdin>:2: 'x' is not a number\n"
                               "<stdin>:4: the second number is missing\n"
                               "<stdin>:5: too great\n");
}

TEST(PointFilter, LineBeyondTheLimitIsABadLine) {
    FilterCase test;
    EXPECT_EQ(test.run("1 2 " + std::string(LineReader::defaultLineLimit, 'x') + "\n3 4\n"),
              ExitCode::Incomplete);
    EXPECT_EQ(test.out(), "* *\n6 8\n");
    EXPECT_EQ(test.messages(), "<stdin>:1: the line is longer than 1048576 bytes\n");
}

TEST(PointFilter, FilesComeOneAfterTheOtherEachWithItsOwnLineNumbers) {
    FilterCase test;
    test.addFile("one.txt", "1 2 one\nx\n");
    test.options.files.emplace_back("-");
    test.addFile("two.txt", "y\n");
    EXPECT_EQ(test.run("3 4 in\nz\n"), ExitCode::Incomplete);
    EXPECT_EQ(test.out(), "2 4 one\n* *\n6 8 in\n* *\n* *\n");
    EXPECT_EQ(test.messages(), test.options.files[0] + ":2: 'x' is not a number\n" +
                                   "<stdin>:2: 'z' is not a number\n" + test.options.files[2] +
                                   ":1: 'y' is not a number\n");
}

TEST(PointFilter, MissingLineEndIsAddedWhenAnotherFileFollows) {
    FilterCase test;
    test.addFile("one.txt", "1 2 a\r\n3 4 b");
    test.addFile("empty.txt", "");
    test.addFile("two.txt", "5 6 c");
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_EQ(test.out(), "2 4 a\r\n6 8 b\r\n10 12 c");
}

TEST(PointFilter, UnreadableFilesAreReportedAndSkipped) {
    FilterCase test;
    const std::string missing = test.directory.file("missing.txt").utf8();
    test.options.files.push_back(missing);
    test.addFile("one.txt", "1 2\n");
    test.options.files.push_back(test.directory.path().string());
    test.addFile("two.txt", "3 4\nx\n");
    EXPECT_EQ(test.run(), ExitCode::Failure);
    EXPECT_EQ(test.out(), "2 4\n6 8\n* *\n");
    const std::string messages = test.messages();
    EXPECT_NE(messages.find("tqproj: cannot read " + missing + ": "), std::string::npos);
    EXPECT_NE(messages.find("tqproj: cannot read " + test.directory.path().string() + ": "),
              std::string::npos);
    EXPECT_EQ(std::ranges::count(messages, '\n'), 3);
}

TEST(PointFilter, WhatTheLibrarySaysOfAConvertedPointIsSaidOnce) {
    FilterCase test;
    test.operation.message = "Doubled: hm\n";
    EXPECT_EQ(test.run("# c\n1 2\n3 4\n"), ExitCode::Success);
    EXPECT_EQ(test.out(), "# c\n2 4\n6 8\n");
    EXPECT_EQ(test.messages(), "tqproj: Doubled: hm, first at line 2 of <stdin>\n");
}

TEST(PointFilter, NothingIsReadAfterTheOutputCouldNotBeWritten) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "there is no device that is always full";
    }
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> full(std::fopen("/dev/full", "w"), &std::fclose);
    OutputBuffer results(full.get());
    FilterCase test;
    test.addFile("one.txt", "1 2\n");
    test.options.files.push_back(test.directory.file("missing.txt").utf8());
    EXPECT_EQ(test.runInto(results), ExitCode::Failure);
    EXPECT_TRUE(test.messages().starts_with("tqproj: cannot write the output: ")) << test.messages();
    EXPECT_EQ(std::ranges::count(test.messages(), '\n'), 1) << test.messages();
}

TEST(PointFilter, AnyBytesAreCarriedThrough) {
    std::string rest;
    for (int byte = 0; byte < 256; ++byte) {
        if (byte != '\n') {
            rest += static_cast<char>(byte);
        }
    }
    FilterCase test;
    EXPECT_EQ(test.run("1 2 " + rest + "\n"), ExitCode::Success);
    EXPECT_EQ(test.out(), "2 4 " + rest + "\n");
}

TEST(PointFilter, ManyLinesComeOutInOrder) {
    std::string text;
    std::string expected;
    for (int number = 0; number < 100000; ++number) {
        text += "1 2 " + std::to_string(number) + "\n";
        expected += "2 4 " + std::to_string(number) + "\n";
    }
    FilterCase test;
    EXPECT_EQ(test.run(text), ExitCode::Success);
    EXPECT_EQ(test.out(), expected);
}

} // namespace
