#include "tools/tqproj/PathText.h"

#include "support/TQPath.h"
#include "support/TQTextEncoding.h"

std::filesystem::path pathOf(const std::string& argument) {
    return std::u8string(argument.begin(), argument.end());
}

std::string textOf(const std::filesystem::path& path) {
    return tq_pathBytesFromText(tq_stringFromPath(path).utf8());
}
