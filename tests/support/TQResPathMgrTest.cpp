#include "support/TQResPathMgr.h"

#include "support/TQPath.h"
#include "testing/ProcessState.h"
#include "testing/TemporaryDirectory.h"

#include <gtest/gtest.h>

namespace {

TEST(TQResPathMgr, FindsFilesOfTheSharedDirectory) {
    const TemporaryDirectory directory;
    const SharedDirectory shared(directory.directory());
    writeBytes(directory.file("areas.txt"), "");
    writeBytes(directory.file("folder/deep.txt"), "");

    TQString path;
    EXPECT_TRUE(TQResPathMgr::appShared()->pathForResource("areas.txt", path));
    EXPECT_EQ(path, directory.file("areas.txt"));
    EXPECT_TRUE(TQResPathMgr::appShared()->pathForResource("folder/deep.txt", path));
    EXPECT_EQ(path, directory.file("folder/deep.txt"));
}

TEST(TQResPathMgr, LeavesThePathAloneForWhatIsNoFile) {
    const TemporaryDirectory directory;
    const SharedDirectory shared(directory.directory());
    ASSERT_EQ(tq_mkdir(directory.file("folder")), 0);

    TQString path("before");
    for (const char* name : {"missing.txt", "folder", "", "."}) {
        EXPECT_FALSE(TQResPathMgr::appShared()->pathForResource(name, path));
        EXPECT_EQ(path.utf8(), "before");
    }
}

TEST(TQResPathMgr, NamesCannotLeadOutOfTheSharedDirectory) {
    const TemporaryDirectory directory;
    writeBytes(directory.file("secret.txt"), "");
    writeBytes(directory.file("shared/open.txt"), "");
    const SharedDirectory shared(directory.file("shared"));

    TQString path;
    EXPECT_FALSE(TQResPathMgr::appShared()->pathForResource("../secret.txt", path));
    EXPECT_FALSE(TQResPathMgr::appShared()->pathForResource("x/../../secret.txt", path));
    EXPECT_FALSE(TQResPathMgr::appShared()->pathForResource(directory.file("secret.txt"), path));
    EXPECT_TRUE(TQResPathMgr::appShared()->pathForResource("open.txt", path));
}

} // namespace
