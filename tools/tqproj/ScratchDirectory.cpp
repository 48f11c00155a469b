#include "tools/tqproj/ScratchDirectory.h"

#include <random>
#include <string>

ScratchDirectory::ScratchDirectory() {
    const std::filesystem::path parent = std::filesystem::temp_directory_path(_error);
    std::random_device random;
    for (bool isMade = false; !isMade && !_error;) {
        _path = parent / ("tqproj-" + std::to_string(random()) + std::to_string(random()));
        isMade = std::filesystem::create_directory(_path, _error); // false for one that was there
    }
}

ScratchDirectory::~ScratchDirectory() {
    std::error_code ignored;
    if (!_error) {
        std::filesystem::remove_all(_path, ignored);
    }
}
