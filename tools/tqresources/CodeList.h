#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// A line of a list: what is to be made from the EPSG data set.
struct CodeLine {
    std::string code;  ///< the EPSG code
    std::string name;  ///< the name that it gets
    std::string datum; ///< of a projection: the name of its datum in the list of datums, or empty
};

/// Reads a list: lines of a code, a name and perhaps a datum, separated by tabs.
/// @param path the file
/// @return its lines; none when it cannot be read
std::vector<CodeLine> readCodeList(const std::filesystem::path& path);
