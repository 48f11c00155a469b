#pragma once

#include "projection/TQProjectionParameter.h"
#include "support/TQTextBlock.h"

#include <cstdint>

/// What a projection class states of its persistent form; TQStatedProjection does the rest.
struct TQProjectionStatement {
    /// The text block of a class that has none: its lines follow those of its parent.
    /// @param writeFailed code: a line cannot be written
    static constexpr TQTextBlock noTextBlock(int writeFailed = 0) {
        return {.className = nullptr,
                .oldestVersion = 0,
                .newestVersion = 0,
                .openFailed = 0,
                .headerUnreadable = 0,
                .versionUnknown = 0,
                .writeFailed = writeFailed};
    }

    /// A text block of version 1 with the codes of the base block.
    /// @param className the class
    static constexpr TQTextBlock commonTextBlock(const char* className) {
        return {.className = className,
                .oldestVersion = 1,
                .newestVersion = 1,
                .openFailed = 5022,
                .headerUnreadable = 5023,
                .versionUnknown = 5024,
                .writeFailed = 5027};
    }

    /// Whether the class has a text block of its own.
    constexpr bool hasTextBlock() const { return textBlock.className != nullptr; }

    TQTextBlock textBlock;             ///< head of the class's text block and its codes
    std::int16_t archiveVersion;       ///< version of the archive block that is written, and the newest read
    TQProjectionParameters parameters; ///< what the class adds to its parent
};
