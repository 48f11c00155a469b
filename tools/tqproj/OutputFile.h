#pragma once

#include "tools/tqproj/ExitCode.h"

#include <filesystem>
#include <string>
#include <string_view>

class Diagnostics;
class OutputBuffer;

/// Whether the path of an output is "-", the standard output.
/// @param path the path as it was given
bool isStandardOutput(const std::filesystem::path& path);

/// Writes a file: complete, or what it was before. One that is no regular file, such as a device, is written
/// directly.
/// @param path the file
/// @param bytes what it is to hold
/// @return why it could not be written, for the user; empty when it was
std::string writeOutputFile(const std::filesystem::path& path, std::string_view bytes);

/// Writes a file, as writeOutputFile() does, or to the standard output, and reports when it cannot.
/// @param path the file, or "-"
/// @param bytes what it is to hold
/// @param output the standard output
/// @param diagnostics where problems go
ExitCode writeOutput(const std::filesystem::path& path, std::string_view bytes, OutputBuffer& output,
                     Diagnostics& diagnostics);
