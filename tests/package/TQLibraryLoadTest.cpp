#include "support/TQLocalizer.h"

#include <gtest/gtest.h>

// This program is not linked to the projection library, so that loading it can be watched.
#ifndef _WIN32

#include <dlfcn.h>

TEST(TQLibraryLoad, LoadingTheProjectionLibraryResetsTheLocalization) {
    const TQString systemLanguage = TQLocalizer::appShared()->language();
    const TQString other(systemLanguage == "fr" ? "en" : "fr");
    TQLocalizer::appShared()->setLanguage(other);
    ASSERT_EQ(other, TQLocalizer::appShared()->language());
    ASSERT_NE(nullptr, dlopen(TQPROJECTION_LIBRARY, RTLD_NOW)) << dlerror();
    EXPECT_EQ(systemLanguage, TQLocalizer::appShared()->language());
}

#endif
