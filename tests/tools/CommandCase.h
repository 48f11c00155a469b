#pragma once

#include "testing/TemporaryDirectory.h"
#include "tests/tools/CapturedStream.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/OutputBuffer.h"

/// The surroundings of one run of a subcommand inside the test.
struct CommandCase {
    TemporaryDirectory directory;
    CapturedStream outputStream;
    CapturedStream messageStream;
    OutputBuffer output{outputStream.stream()};
    Diagnostics diagnostics{messageStream.stream()};

    std::string out() const { return outputStream.text(); }
    std::string messages() const { return messageStream.text(); }
};
