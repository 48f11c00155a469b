#include "support/TQLocalizer.h"
#include "support/TQSharedObject.h"

#include <gtest/gtest.h>

// This program is not linked to the projection library, so that loading it can be watched.
#ifndef _WIN32

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>

namespace {

const TQString catalogueKey("TQExternalProjList");

const char* registration() {
    return TQSharedObject::sharedAppObjectForKey(catalogueKey) != nullptr ? "registered" : "not registered";
}

// TQExternalProjList::appShared(); what it returns is of no use without the library.
bool buildCatalogue(void* library) {
    using AppShared = void* (*)();
    const auto appShared = reinterpret_cast<AppShared>(dlsym(library, "_ZN18TQExternalProjList9appSharedEv"));
    return appShared != nullptr && appShared() != nullptr;
}

bool isLoaded() { return dlopen(TQPROJECTION_LIBRARY, RTLD_NOW | RTLD_NOLOAD) != nullptr; }

/// Unloads the library while its catalogue is registered, and ends the process.
[[noreturn]] void unloadWithCatalogue() {
    void* const library = dlopen(TQPROJECTION_LIBRARY, RTLD_NOW);
    const bool isBuilt = library != nullptr && buildCatalogue(library);
    std::fprintf(stderr, "%s when built, ", registration());
    const bool isUnloaded = isBuilt && dlclose(library) == 0 && !isLoaded();
    std::fprintf(stderr, "%s when unloaded", registration());
    std::exit(isUnloaded ? EXIT_SUCCESS : EXIT_FAILURE);
}

} // namespace

TEST(TQLibraryLoad, LoadingTheProjectionLibraryResetsTheLocalization) {
    const TQString systemLanguage = TQLocalizer::appShared()->language();
    const TQString other(systemLanguage == "fr" ? "en" : "fr");
    TQLocalizer::appShared()->setLanguage(other);
    ASSERT_EQ(other, TQLocalizer::appShared()->language());
    ASSERT_NE(nullptr, dlopen(TQPROJECTION_LIBRARY, RTLD_NOW)) << dlerror();
    EXPECT_EQ(systemLanguage, TQLocalizer::appShared()->language());
}

TEST(TQLibraryLoadDeathTest, TheProjectionLibraryTakesTheCatalogueAlongWhenUnloaded) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(unloadWithCatalogue(), testing::ExitedWithCode(EXIT_SUCCESS),
                "^registered when built, not registered when unloaded$");
}

#endif
