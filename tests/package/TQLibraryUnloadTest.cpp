#include <gtest/gtest.h>

// This program is not linked to the projection library, and has a function of its own where the library looks
// for PROJ's.
#ifndef _WIN32

#include <dlfcn.h>

namespace {

int cleanups = 0;

} // namespace

/// In place of PROJ's: the program comes first when the library's symbols are looked up.
extern "C" __attribute__((visibility("default"))) void proj_cleanup() { ++cleanups; }

TEST(TQLibraryUnload, TheProjectionLibraryCleansPROJUpWhenLoadedAndOnceMoreWhenUnloaded) {
    void* const library = dlopen(TQPROJECTION_LIBRARY, RTLD_NOW);
    ASSERT_NE(library, nullptr) << dlerror();
    EXPECT_EQ(cleanups, 1);
    ASSERT_EQ(dlclose(library), 0);
    EXPECT_EQ(dlopen(TQPROJECTION_LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr) << "it is unloaded";
    EXPECT_EQ(cleanups, 2);
}

#endif
