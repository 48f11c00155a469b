#pragma once

#include "projection/TQProjection.h"
#include "support/TQFile.h"
#include "testing/ProjectionTables.h"
#include "testing/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <string>

/// Reads the text of a projection, with its header, and gives the reader's code.
inline int readProjectionText(TQProjection& projection, const std::string& text) {
    const TemporaryDirectory directory;
    TQFile file(directory.fileWith("projection", text));
    return projection.loadFromFile(file, true);
}

/// The text that a projection writes, with its header or without.
inline std::string writtenProjectionText(const TQProjection& projection, bool withHeader = true) {
    const TemporaryDirectory directory;
    TQFile file(directory.file("projection"));
    EXPECT_EQ(projection.writeToFile(file, withHeader), 0);
    EXPECT_EQ(file.close(), 0);
    return directory.bytesOf("projection");
}

/// The value of one of a projection's parameters as its table shows it.
inline std::string parameterOf(const TQProjection& projection, const std::string& name) {
    for (const ListedParameter& parameter : listedParameters(projection)) {
        if (parameter.name == name) {
            return parameter.value;
        }
    }
    return "none";
}
