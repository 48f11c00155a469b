#pragma once

#include <filesystem>
#include <string>

// Paths as they come from the command line and go into messages. Between the two they are paths of the
// standard library: on most systems their bytes need not be text, and a file is named by its bytes.

/// The path that an argument of the command line names.
/// @param argument the argument, as tq_utf8Arguments() gives it
std::filesystem::path pathOf(const std::string& argument);

/// A path for messages and lists, which show what is not printable in it as other text.
/// @param path the path
std::string textOf(const std::filesystem::path& path);
