#include "support/TQResPathMgr.h"

#include "support/TQPath.h"
#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

namespace {

using tqtest::SharedDirectory;
using tqtest::TemporaryDirectory;
using tqtest::writeBytes;

TEST(TQResPathMgr, FindsFilesOfTheSharedDirectory) {
    const TemporaryDirectory directory;
    const SharedDirectory shared(directory.path());
    writeBytes(directory.pathOf("areas.txt"), "");
    writeBytes(directory.pathOf("folder/deep.txt"), "");

    TQString path;
    EXPECT_TRUE(TQResPathMgr::appShared()->pathForResource("areas.txt", path));
    EXPECT_EQ(path, directory.pathOf("areas.txt"));
    EXPECT_TRUE(TQResPathMgr::appShared()->pathForResource("folder/deep.txt", path));
    EXPECT_EQ(path, directory.pathOf("folder/deep.txt"));
}

TEST(TQResPathMgr, LeavesThePathAloneForWhatIsNoFile) {
    const TemporaryDirectory directory;
    const SharedDirectory shared(directory.path());
    ASSERT_EQ(tq_mkdir(directory.pathOf("folder")), 0);

    TQString path("before");
    for (const char* name : {"missing.txt", "folder", "", "."}) {
        EXPECT_FALSE(TQResPathMgr::appShared()->pathForResource(name, path));
        EXPECT_EQ(path.utf8(), "before");
    }
}

TEST(TQResPathMgr, NamesCannotLeadOutOfTheSharedDirectory) {
    const TemporaryDirectory directory;
    writeBytes(directory.pathOf("secret.txt"), "");
    writeBytes(directory.pathOf("shared/open.txt"), "");
    const SharedDirectory shared(directory.pathOf("shared"));

    TQString path;
    EXPECT_FALSE(TQResPathMgr::appShared()->pathForResource("../secret.txt", path));
    EXPECT_FALSE(TQResPathMgr::appShared()->pathForResource("x/../../secret.txt", path));
    EXPECT_FALSE(TQResPathMgr::appShared()->pathForResource(directory.pathOf("secret.txt"), path));
    EXPECT_TRUE(TQResPathMgr::appShared()->pathForResource("open.txt", path));
}

} // namespace
