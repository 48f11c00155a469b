#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// A file that defines an ellipsoid, a datum or a projection, told by its extension.
struct DefinitionFile {
    /// What a file defines, in the order in which files may name each other.
    enum class Kind { Ellipsoid, Datum, Projection };

    std::filesystem::path path; ///< the file
    Kind kind;                  ///< what it defines
};

/// The definition files that a path means: the file itself, or those of a directory, by name.
/// @param path the file or directory
/// @param files receives the files behind those that it holds
/// @return why there are none: a reason for the user; empty when there may be some
std::string addDefinitionFiles(const std::filesystem::path& path, std::vector<DefinitionFile>& files);
