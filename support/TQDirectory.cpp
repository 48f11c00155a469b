#include "support/TQDirectory.h"

#include "support/TQMessages.h"
#include "support/TQPath.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

namespace {

/// Adds a file's name, or reports one that is no text from which the file would be found again.
void addName(const std::filesystem::path& file, std::vector<TQString>& names) {
    const TQString name = tq_stringFromPath(file);
    if (tq_filesystemPath(name) == file) {
        names.push_back(name);
    } else {
        tq_perrorf("TQOpenDir: the name of a file is not valid Unicode: %s\n", name);
    }
}

/// The names of a directory's regular files; nothing when they could not all be listed.
std::optional<std::vector<TQString>> regularFiles(const std::filesystem::path& directory) {
    std::vector<TQString> names;
    std::error_code error;
    std::filesystem::directory_iterator entry(directory, error);
    while (!error && entry != std::filesystem::directory_iterator()) {
        std::error_code unreadableStatus; // of a broken link, for instance: not a regular file
        if (entry->is_regular_file(unreadableStatus)) {
            addName(entry->path().filename(), names);
        }
        entry.increment(error);
    }
    if (error) {
        return std::nullopt;
    }
    return names;
}

void sortByBytes(std::vector<TQString>& names) {
    std::sort(names.begin(), names.end(),
              [](const TQString& left, const TQString& right) { return left.utf8() < right.utf8(); });
}

} // namespace

TQOpenDir::TQOpenDir(const TQString& directory, const TQString& extension) {
    std::optional<std::vector<TQString>> names = regularFiles(tq_filesystemPath(directory));
    _isListed = names.has_value();
    if (!_isListed) {
        return;
    }

    _names = std::move(*names);
    if (!extension.isEmpty()) {
        std::erase_if(_names, [&](const TQString& name) { return tq_pathExtension(name) != extension; });
    }
    sortByBytes(_names);
}
