#include "tools/tqproj/UnpackCommand.h"

#include "manager/TQProjMgr.h"
#include "support/TQSharedDirectory.h"
#include "testing/StreamBytes.h"
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
    test.pack({"Lambert-93", "UTM zone 31N (WGS 84)"}); // in this order
    const std::string whole = test.directory.bytesOf("survey.doc");
    test.options.path = test.directory.fileWith("cut.doc", whole.substr(0, whole.size() - 1)).utf8();
    EXPECT_EQ(test.run(), ExitCode::Incomplete);
    EXPECT_THAT(test.messages(), HasSubstr(test.options.path + " is damaged or no document of projections"));
    EXPECT_THAT(test.directory.entries(), UnorderedElementsAre("survey.doc", "cut.doc", "out"));
    EXPECT_NE(test.directory.bytesOf("out/Lambert-93.proj"), "");
    EXPECT_EQ(test.directory.bytesOf("out/UTM zone 31N (WGS 84).proj"), "");
}

TEST(UnpackCommand, WhatIsNotReadMakesItIncomplete) {
    const StreamBytes head = StreamBytes().tag("TQEllMgr", 0).integer(0).tag("TQProjMgr", 0);
    const StreamBytes entry = StreamBytes().integer(static_cast<std::int32_t>(0x80000001U)).byte(5);
    const std::string longName(2000, 'e');
    const StreamBytes mercator = StreamBytes()
                                     .tag("TQPrMercDirect", 0)
                                     .tag("TQPrMercator", 0)
                                     .tag("TQProjection", 1)
                                     .text("M")
                                     .text("")
                                     .numbers({0.0, 0.0, 0.0, 0.0, 1.0});
    const StreamBytes unknownEllipsoid = StreamBytes()
                                             .tag("TQPrMercDirect", 0)
                                             .tag("TQPrMercator", 0)
                                             .tag("TQProjection", 1)
                                             .text("N")
                                             .text(longName)
                                             .numbers({0.0, 0.0, 0.0, 0.0, 1.0});
    const StreamBytes second = StreamBytes().integer(static_cast<std::int32_t>(0x80000002U)).byte(5);
    const StreamBytes documents[] = {
        StreamBytes(head).integer(2).append(entry).append(mercator).integer(0), // a null reference
        StreamBytes(head).integer(1).append(entry).append(mercator).byte(0),    // a byte behind
        StreamBytes(head).integer(2).append(entry).append(mercator).append(second).append(unknownEllipsoid),
    };
    for (const StreamBytes& document : documents) {
        UnpackCase test;
        test.options.path = test.directory.fileWith("a.doc", document.bytes()).utf8();
        EXPECT_EQ(test.run(), ExitCode::Incomplete);
        EXPECT_THAT(test.messages(), HasSubstr("a.doc is damaged"));
        EXPECT_NE(test.directory.bytesOf("out/M.proj"), "");
    }
}

TEST(UnpackCommand, NamesThatAreNoFileNamesAreMended) {
    UnpackCase test;
    StreamBytes document = StreamBytes().tag("TQEllMgr", 0).integer(0).tag("TQProjMgr", 0).integer(3);
    std::uint32_t number = 0x80000000U;
    for (const char* name : {"../x", "", "a\x1B[2Jb"}) {
        document.integer(static_cast<std::int32_t>(++number))
            .byte(5)
            .tag("TQPrMercDirect", 0)
            .tag("TQPrMercator", 0)
            .tag("TQProjection", 1)
            .text(name)
            .text("")
            .numbers({static_cast<double>(number), 0.0, 0.0, 0.0, 1.0});
    }
    test.options.path = test.directory.fileWith("a.doc", document.bytes()).utf8();
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_THAT(test.directory.entries(), UnorderedElementsAre("a.doc", "out"))
        << "nothing beside the directory";
    EXPECT_NE(test.directory.bytesOf("out/_._x.proj"), "");
    EXPECT_NE(test.directory.bytesOf("out/unnamed.proj"), "");
    EXPECT_NE(test.directory.bytesOf("out/a_[2Jb.proj"), "");
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
    EXPECT_EQ(test.messages(),
              "tqproj: cannot write all projections into " + test.options.path + ": Not a directory\n");
}
