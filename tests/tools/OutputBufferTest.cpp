#include "tools/tqproj/OutputBuffer.h"

#include "tests/tools/CapturedStream.h"
#include "tools/tqproj/Diagnostics.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>

namespace {

TEST(OutputBuffer, FlushWritesEverythingInOrder) {
    const CapturedStream stream;
    OutputBuffer output(stream.stream());
    output.text() += "one ";
    EXPECT_TRUE(output.flush());
    output.text() += "two\n";
    EXPECT_TRUE(output.flush());
    EXPECT_TRUE(output.flush());
    EXPECT_EQ(stream.text(), "one two\n");
}

TEST(OutputBuffer, WritesOnItsOwnWhenItIsLarge) {
    const CapturedStream stream;
    OutputBuffer output(stream.stream());
    output.text() = "small";
    output.flushIfLarge();
    EXPECT_EQ(stream.text(), "");
    output.text().assign(OutputBuffer::blockSize, 'x');
    output.flushIfLarge();
    EXPECT_EQ(stream.text(), std::string(OutputBuffer::blockSize, 'x'));
    EXPECT_TRUE(output.text().empty());
}

TEST(OutputBuffer, FinishAnswersSuccess) {
    const CapturedStream stream;
    const CapturedStream messages;
    Diagnostics diagnostics(messages.stream());
    OutputBuffer output(stream.stream());
    output.text() += "x";
    EXPECT_EQ(output.finish(diagnostics), ExitCode::Success);
    EXPECT_EQ(stream.text(), "x");
    EXPECT_EQ(messages.text(), "");
}

TEST(OutputBuffer, FailedWriteIsReportedOnceAndRemembered) {
    // Every write to it fails.
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> device(std::fopen("/dev/full", "wb"), &std::fclose);
    if (device == nullptr) {
        GTEST_SKIP() << "there is no device that is always full";
    }
    const CapturedStream messages;
    Diagnostics diagnostics(messages.stream());
    OutputBuffer output(device.get());
    output.text() += "x";
    EXPECT_FALSE(output.flush());
    EXPECT_EQ(output.error(), std::errc::no_space_on_device);
    output.text() += "y";
    EXPECT_FALSE(output.flush());
    EXPECT_TRUE(output.text().empty());
    EXPECT_EQ(output.finish(diagnostics), ExitCode::Failure);
    EXPECT_EQ(messages.text(), "tqproj: cannot write the output: " + output.error().message() + "\n");
}

} // namespace
