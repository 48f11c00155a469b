#include "tools/tqproj/DefinitionFile.h"

#include "support/TQDirectory.h"
#include "support/TQPath.h"
#include "tools/tqproj/InputFile.h"
#include "tools/tqproj/PathText.h"

#include <array>
#include <optional>
#include <system_error>

namespace {

using Kind = DefinitionFile::Kind;

std::optional<Kind> kindOf(const TQString& path) {
    const std::string extension = tq_pathExtension(path).utf8();
    return extension == "ell"    ? std::optional(Kind::Ellipsoid)
           : extension == "dtm"  ? std::optional(Kind::Datum)
           : extension == "proj" ? std::optional(Kind::Projection)
                                 : std::nullopt;
}

/// Why nothing of a path can be read: of a directory, that it cannot be listed.
std::error_code readingError(const std::filesystem::path& path) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) {
        const std::filesystem::directory_iterator unused(path, error);
        return error;
    }
    return InputFile::openingError(path);
}

} // namespace

std::string addDefinitionFiles(const std::filesystem::path& path, std::vector<DefinitionFile>& files) {
    const TQString given = tq_stringFromPath(path);
    if (const TQOpenDir directory(given); directory.isListed()) {
        for (const TQString& name : directory) {
            if (const std::optional<Kind> kind = kindOf(name)) {
                files.push_back({path / tq_filesystemPath(name), *kind});
            }
        }
        return {};
    }
    if (const std::error_code error = readingError(path)) {
        return "cannot read " + textOf(path) + ": " + error.message();
    }
    const std::optional<Kind> kind = kindOf(given);
    if (!kind) {
        return textOf(path) + " is neither a .proj, an .ell nor a .dtm file";
    }
    files.push_back({path, *kind});
    return {};
}
