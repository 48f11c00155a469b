#pragma once

#include "tests/tools/CommandCase.h"
#include "tools/tqproj/PackCommand.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// The surroundings of a command that reads a document of projections.
struct PackedDocument : CommandCase {
    /// Writes a document with projections of the resources.
    std::string pack(const std::vector<std::string>& names) {
        const std::string path = directory.file("survey.doc").utf8();
        EXPECT_EQ(PackCommand({names, "", path}, output, diagnostics).run(), ExitCode::Success);
        return path;
    }
};
