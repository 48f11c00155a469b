#pragma once

#include <algorithm>

/// What the command answers to the shell; a greater code is the graver one.
enum class ExitCode : int {
    Success = 0,    ///< all that was asked for came out
    Incomplete = 1, ///< some lines could not be converted and all others came out; nothing was found; a check
                    ///< found problems
    Failure = 2     ///< wrong usage, a file that cannot be read, output that cannot be written
};

/// The graver of two exit codes.
/// @param one an exit code
/// @param other another exit code
constexpr ExitCode graver(ExitCode one, ExitCode other) { return std::max(one, other); }
