#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// Writes a file: complete, or what it was before. One that is no regular file, such as a device, is written
/// directly.
/// @param path the file
/// @param bytes what it is to hold
/// @return why it could not be written, for the user; empty when it was
std::string writeOutputFile(const std::filesystem::path& path, std::string_view bytes);
