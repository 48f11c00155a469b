#include "support/TQString.h"

#include <gtest/gtest.h>

// This program is linked to the support library, as applications are, whose registries live as long as the
// process, and not to the projection library. It has a function of its own where that one looks for PROJ's.
#ifndef _WIN32

#include <dlfcn.h>
#include <string>

namespace {

int cleanups = 0;

} // namespace

/// In place of PROJ's: the program comes first when the library's symbols are looked up.
extern "C" __attribute__((visibility("default"))) void proj_cleanup() { ++cleanups; }

TEST(TQLibraryUnload, TheProjectionLibraryCleansPROJUpWhenLoadedAndOnceMoreWhenUnloaded) {
    const std::string path = TQString(TQPROJECTION_LIBRARY).utf8();
    void* const library = dlopen(path.c_str(), RTLD_NOW);
    ASSERT_NE(library, nullptr) << dlerror();
    EXPECT_EQ(cleanups, 1);
    ASSERT_EQ(dlclose(library), 0);
    EXPECT_EQ(dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr) << "it is unloaded";
    EXPECT_EQ(cleanups, 2);
}

#endif
