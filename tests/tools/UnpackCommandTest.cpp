#include "tools/tqproj/UnpackCommand.h"

#include "manager/TQProjMgr.h"
#include "support/TQSharedDirectory.h"
#include "tests/tools/PackedDocument.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using testing::HasSubstr;
using testing::UnorderedElementsAre;

namespace {

struct UnpackCase : PackedDocument {
    UnpackOptions options;

    UnpackCase() { options.directory = directory.file("out").utf8(); }

    ExitCode run() { return UnpackCommand(options, diagnostics).run(); }
};

} // namespace

TEST(UnpackCommand, TheFilesAreThoseThatWerePacked) {
    UnpackCase test;
    test.options.path = test.pack({"Lambert-93", "CH1903+ / LV95"});
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_EQ(test.messages(), "");
    EXPECT_THAT(test.directory.entries(), UnorderedElementsAre("survey.doc", "out"));
    const TQString resource = tq_createPath(TQGetApplicationSharedDirectory(), "resProj", "Projection");
    EXPECT_EQ(test.directory.bytesOf("out/Lambert-93.proj"),
              readBytes(tq_createPath(resource, TQString("Lambert-93.proj"))));
    EXPECT_NE(test.directory.bytesOf("out/CH1903+ _ LV95.proj"), "");
}

TEST(UnpackCommand, AFileThatIsThereStays) {
    UnpackCase test;
    test.options.path = test.pack({"Lambert-93"});
    test.directory.fileWith("out/Lambert-93.proj", "mine");
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_EQ(test.directory.bytesOf("out/Lambert-93.proj"), "mine");
    EXPECT_NE(test.directory.bytesOf("out/Lambert-93_1.proj"), "");
}

TEST(UnpackCommand, OfACutDocumentTheWholeProjectionsComeOut) {
    UnpackCase test;
    test.pack({"Lambert-93", "UTM zone 31N (WGS 84)"});
    const std::string whole = test.directory.bytesOf("survey.doc");
    test.options.path = test.directory.fileWith("cut.doc", whole.substr(0, whole.size() - 1)).utf8();
    EXPECT_EQ(test.run(), ExitCode::Incomplete);
    EXPECT_THAT(test.messages(), HasSubstr(test.options.path + " is damaged or no document of projections"));
    EXPECT_EQ(test.directory.entries().count("out"), 1U);
}

TEST(UnpackCommand, WhatIsNoDocumentIsAFailure) {
    UnpackCase test;
    for (const char* bytes : {"", "TQFile v1\n5\n", "\x08TQEllMgr"}) {
        test.options.path = test.directory.fileWith("a.doc", bytes).utf8();
        EXPECT_EQ(test.run(), ExitCode::Failure) << bytes;
        EXPECT_EQ(test.directory.entries().count("out"), 0U);
    }
}

TEST(UnpackCommand, AFileThatCannotBeReadIsAFailure) {
    UnpackCase test;
    test.options.path = test.directory.file("missing.doc").utf8();
    EXPECT_EQ(test.run(), ExitCode::Failure);
    EXPECT_THAT(test.messages(), HasSubstr("tqproj: cannot read " + test.options.path + ": "));
}

TEST(UnpackCommand, ADirectoryThatCannotBeMadeIsAFailure) {
    UnpackCase test;
    test.options.path = test.pack({"Lambert-93"});
    test.options.directory = test.options.path;
    EXPECT_EQ(test.run(), ExitCode::Failure);
    EXPECT_EQ(test.messages(), "tqproj: cannot write all projections into " + test.options.path + "\n");
}
