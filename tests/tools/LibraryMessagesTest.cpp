#include "tools/tqproj/LibraryMessages.h"

#include "testing/CapturedMessages.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(LibraryMessages, CollectsMessagesInOneLine) {
    LibraryMessages messages;
    EXPECT_TRUE(messages.isEmpty());
    tq_perror("one\n");
    tq_perror("two\nthree\r\n");
    tq_perror(" \n");
    EXPECT_FALSE(messages.isEmpty());
    EXPECT_EQ(messages.take(), "one; two three");
    EXPECT_TRUE(messages.isEmpty());
    EXPECT_EQ(messages.take(), "");
}

TEST(LibraryMessages, WhatPROJWroteTellsMore) {
    LibraryMessages messages;
    tq_perror("Unknown error (code 4096)\n");
    EXPECT_EQ(messages.takeReason(TQString("proj_create: crs: not found\n")), "crs: not found");
    EXPECT_TRUE(messages.isEmpty());
    EXPECT_EQ(messages.takeReason(TQString("no function")), "no function");
    tq_perror("the library's own\n");
    EXPECT_EQ(messages.takeReason(TQString()), "the library's own");
    tq_perror("TQPrProj4::initPROJ: PROJ is not CRS (type 1)\n");
    EXPECT_EQ(messages.takeReason(TQString()), "PROJ is not CRS (type 1)");
}

TEST(LibraryMessages, PassesOnWhatPROJGaveAsTheReason) {
    LibraryMessages messages;
    tq_perror("TQPrProj4::convertGeoPt: PROJ error :Invalid coordinate\n");
    EXPECT_EQ(messages.take(), "Invalid coordinate");
    tq_perror("TQPrProj4::resetPROJTransform: PROJ error :\n");
    EXPECT_EQ(messages.take(), "TQPrProj4::resetPROJTransform: PROJ error :") << "better than nothing";
}

TEST(LibraryMessages, KeepsABoundedText) {
    LibraryMessages messages;
    for (int count = 0; count < 1000; ++count) {
        tq_perror("0123456789");
    }
    EXPECT_LT(messages.take().size(), 1100U);
}

TEST(LibraryMessages, PutsTheErrorPrinterBack) {
    const CapturedMessages before;
    {
        const LibraryMessages messages;
        tq_perror("caught");
    }
    tq_perror("printed");
    EXPECT_EQ(before.lines(), std::vector<std::string>{"printed"});
}

} // namespace
