#include "tools/tqproj/InspectCommand.h"

#include "testing/StreamBytes.h"
#include "tests/tools/PackedDocument.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using testing::HasSubstr;

namespace {

struct InspectCase : PackedDocument {
    ExitCode inspect(const std::string& path) { return InspectCommand({path}, output, diagnostics).run(); }

    ExitCode inspectBytes(const std::string& bytes) {
        return inspect(directory.fileWith("a.doc", bytes).utf8());
    }
};

/// A document that holds an ellipsoid and no projection.
StreamBytes smallDocument() {
    return StreamBytes()
        .tag("TQEllMgr", 0)
        .integer(1)
        .tag("TQEllipsoid", 4)
        .text("Sphere")
        .number(6371000.0)
        .number(0.0)
        .byte(0)
        .tag("TQProjMgr", 0)
        .integer(0);
}

} // namespace

// The tag of TQEllMgr takes 11 bytes, the count 4, the ellipsoid 14 + 11 + 8 + 8 + 1.
TEST(InspectCommand, PrintsWhereEachBlockBeginsAndWhatItHolds) {
    InspectCase test;
    EXPECT_EQ(test.inspectBytes(smallDocument().bytes()), ExitCode::Success);
    EXPECT_EQ(test.out(), "0\tTQEllMgr 0\t1 ellipsoid\n"
                          "15\tTQEllipsoid 4\tSphere, a 6371000 m, 1/f inf, no datum shift\n"
                          "57\tTQProjMgr 0\t0 projections\n");
    EXPECT_EQ(test.messages(), "");
}

TEST(InspectCommand, PrintsTheBlocksThatAProjectionNests) {
    InspectCase test;
    EXPECT_EQ(test.inspect(test.pack({"Lambert-93", "UTM zone 31N (WGS 84)"})), ExitCode::Success);
    EXPECT_THAT(test.out(), HasSubstr("\tTQProjMgr 0\t2 projections\n"));
    EXPECT_THAT(test.out(), testing::ContainsRegex(
                                "\tTQPrLambert [0-9] / .*TQProjection 1\tLambert-93, Lambert on GRS 1980\n"));
    EXPECT_THAT(test.out(), HasSubstr("\tUTM zone 31N (WGS 84), UTM on WGS 84\n"));
}

TEST(InspectCommand, OfADamagedDocumentTheBlocksBeforeTheFaultArePrinted) {
    InspectCase test;
    const std::string whole = smallDocument().bytes();
    EXPECT_EQ(test.inspectBytes(whole.substr(0, whole.size() - 1)), ExitCode::Incomplete);
    EXPECT_THAT(test.out(), HasSubstr("Sphere"));
    EXPECT_THAT(test.messages(), HasSubstr("a.doc is damaged or no document of projections"));
}

TEST(InspectCommand, AnUnknownProjectionIsReportedInTheLibrarysWords) {
    InspectCase test;
    const StreamBytes document = StreamBytes()
                                     .tag("TQEllMgr", 0)
                                     .integer(0)
                                     .tag("TQProjMgr", 0)
                                     .integer(1)
                                     .integer(static_cast<std::int32_t>(0x80000001U))
                                     .byte(14);
    EXPECT_EQ(test.inspectBytes(document.bytes()), ExitCode::Incomplete);
    EXPECT_THAT(test.messages(), HasSubstr("projection type 14 is unknown"));
}

TEST(InspectCommand, WhatIsNoDocumentIsAFailure) {
    for (const std::string& bytes :
         {std::string(), std::string("TQFile v1\n"), smallDocument().bytes().substr(1)}) {
        InspectCase test;
        EXPECT_EQ(test.inspectBytes(bytes), ExitCode::Failure);
        EXPECT_EQ(test.out(), "");
    }
    InspectCase test;
    EXPECT_EQ(test.inspect(test.directory.file("missing").utf8()), ExitCode::Failure);
    EXPECT_THAT(test.messages(), HasSubstr("tqproj: cannot read "));
}

TEST(InspectCommand, NamesCannotCommandTheTerminal) {
    InspectCase test;
    const std::string name = std::string("\x1B[2J\n") + std::string(20000, 'Q');
    const StreamBytes document = StreamBytes()
                                     .tag("TQEllMgr", 0)
                                     .integer(1)
                                     .tag("TQEllipsoid", 4)
                                     .text(name)
                                     .number(6371000.0)
                                     .number(0.0)
                                     .byte(0)
                                     .tag("TQProjMgr", 0)
                                     .integer(0);
    EXPECT_EQ(test.inspectBytes(document.bytes()), ExitCode::Success);
    EXPECT_EQ(test.out().find('\x1B'), std::string::npos);
    EXPECT_EQ(std::ranges::count(test.out(), '\n'), 3);
}

TEST(InspectCommand, WhatIsNotReadMakesItIncomplete) {
    const StreamBytes head = StreamBytes().tag("TQEllMgr", 0).integer(0).tag("TQProjMgr", 0);
    for (const StreamBytes& document : {StreamBytes(head).integer(-1), StreamBytes(head).integer(0).byte(0),
                                        StreamBytes(head).integer(1).integer(0)}) {
        InspectCase test;
        EXPECT_EQ(test.inspectBytes(document.bytes()), ExitCode::Incomplete);
        EXPECT_THAT(test.messages(), HasSubstr("is damaged"));
    }
}

TEST(InspectCommand, AnUnknownVersionIsNamed) {
    InspectCase test;
    const StreamBytes document = StreamBytes().tag("TQEllMgr", 0).integer(0).tag("TQProjMgr", 3).integer(0);
    EXPECT_EQ(test.inspectBytes(document.bytes()), ExitCode::Incomplete);
    EXPECT_THAT(test.messages(), HasSubstr("version 3 is unknown"));
}
