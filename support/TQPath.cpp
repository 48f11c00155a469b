#include "support/TQPath.h"

#include "support/TQCaseFolding.h"
#include "support/TQPlatform.h"
#include "support/TQTextEncoding.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <set>
#include <string>
#include <string_view>
#include <system_error>

namespace {

namespace fs = std::filesystem;

// ---- Joining and comparing

#ifdef _WIN32
constexpr std::string_view separators = "/\\";
#else
constexpr std::string_view separators = "/";
#endif

fs::path withoutTrailingSeparator(const fs::path& path) {
    return path.has_filename() || path == path.root_path() ? path : path.parent_path();
}

/// The form in which paths of what does not exist are compared.
fs::path comparablePath(const fs::path& path) {
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error);
    if (error) {
        return path;
    }
    const fs::path canonical = fs::weakly_canonical(absolute, error);
    return withoutTrailingSeparator(error ? absolute.lexically_normal() : canonical);
}

// ---- File names for every platform

constexpr std::size_t maximumFileNameSize = 240; // of the 255 that file systems allow, in UTF-8 bytes

bool isControl(char32_t character) { return character < 0x20 || (character >= 0x7F && character < 0xA0); }

bool isReserved(char32_t character) {
    return std::u32string_view(U"<>:\"/\\|?*").find(character) != std::u32string_view::npos;
}

std::string withLegalCharacters(const TQString& name) {
    std::string result;
    for (const char32_t character : name.characters()) {
        const bool isLegal =
            !isControl(character) && !isReserved(character) && !tq_carriesPathByte(character);
        tq_appendUTF8(result, isLegal ? character : U'_');
    }
    return result;
}

std::string trimmed(const std::string& name) {
    const std::size_t first = name.find_first_not_of(' ');
    if (first == std::string::npos) {
        return {};
    }
    const std::size_t last = name.find_last_not_of(" .");
    return last == std::string::npos ? std::string() : name.substr(first, last - first + 1);
}

/// The names that Windows keeps for devices, with any extension: CON, COM1.txt, LPT² ...
bool isDeviceName(const std::string& name) {
    std::string base = tq_caseFolded(name.substr(0, name.find('.')));
    base.erase(base.find_last_not_of(' ') + 1);

    static constexpr std::array<std::string_view, 7> devices = {"con",    "prn",     "aux",   "nul",
                                                                "conin$", "conout$", "clock$"};
    if (std::find(devices.begin(), devices.end(), base) != devices.end()) {
        return true;
    }
    if (!base.starts_with("com") && !base.starts_with("lpt")) {
        return false;
    }

    static constexpr std::array<std::string_view, 13> ports = {
        "0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "\xC2\xB9", "\xC2\xB2", "\xC2\xB3"};
    return std::find(ports.begin(), ports.end(), base.substr(3)) != ports.end();
}

std::string legalFileName(const TQString& name) {
    std::string legal = trimmed(withLegalCharacters(name));
    if (legal.empty()) {
        return "unnamed";
    }
    if (legal.front() == '.') {
        legal.front() = '_';
    }
    return isDeviceName(legal) ? "_" + legal : legal;
}

/// Shortens UTF-8 to a size without cutting through a character.
std::string shortened(const std::string& utf8, std::size_t size) {
    if (utf8.size() <= size) {
        return utf8;
    }
    while (size > 0 && (static_cast<unsigned char>(utf8[size]) & 0xC0U) == 0x80U) {
        --size;
    }
    return trimmed(utf8.substr(0, size));
}

std::set<std::string> foldedEntries(const fs::path& directory) {
    std::set<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(directory, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        names.insert(tq_caseFolded(tq_stringFromPath(entry->path().filename()).utf8()));
    }
    return names;
}

} // namespace

TQString tq_createPath(const TQString& directory, const TQString& name) {
    if (directory.isEmpty()) {
        return name;
    }
    if (name.isEmpty()) {
        return directory;
    }

    const std::string relative = name.utf8();
    const std::size_t start = relative.find_first_not_of(separators);
    if (start == std::string::npos) {
        return directory;
    }
    TQString path(directory);
    if (tq_filesystemPath(directory).has_filename()) {
        path.append("/");
    }
    path.append(start == 0 ? name : TQString(relative.c_str() + start));
    return path;
}

TQString tq_createPath(const TQString& directory, const TQString& subdirectory, const TQString& name) {
    return tq_createPath(tq_createPath(directory, subdirectory), name);
}

TQString tq_createFilePath(const TQString& directory, const TQString& name, const TQString& extension) {
    TQString path = tq_createPath(directory, name);
    if (!extension.isEmpty()) {
        path.append(".");
        path.append(extension);
    }
    return path;
}

TQString tq_pathDirPart(const TQString& path) {
    const fs::path directory = withoutTrailingSeparator(tq_filesystemPath(path).parent_path());
    return directory.empty() ? TQString(".") : tq_stringFromPath(directory);
}

TQString tq_pathExtension(const TQString& path) {
    const TQString extension = tq_stringFromPath(tq_filesystemPath(path).extension());
    return extension.isEmpty() ? extension : extension.rightSubstring(extension.length() - 1);
}

bool tq_pathIsEqual(const TQString& first, const TQString& second) {
    const fs::path firstPath = tq_filesystemPath(first);
    const fs::path secondPath = tq_filesystemPath(second);
    if (firstPath == secondPath) {
        return true;
    }
    if (firstPath.empty() || secondPath.empty()) {
        return false;
    }

    std::error_code error;
    if (fs::equivalent(firstPath, secondPath, error)) {
        return true;
    }
    return comparablePath(firstPath) == comparablePath(secondPath);
}

int tq_mkdir(const TQString& path) {
    std::error_code error;
    const fs::path directory = tq_filesystemPath(path);
    fs::create_directories(directory, error);
    return fs::is_directory(directory, error) ? 0 : 1;
}

TQUniqueFileNames::TQUniqueFileNames(const TQString& directory)
    : _taken(foldedEntries(tq_filesystemPath(directory))) {}

TQString TQUniqueFileNames::take(const TQString& name, const TQString& extension) {
    const std::string ending = extension.isEmpty() ? std::string() : "." + extension.utf8();
    const std::string legal = legalFileName(name);
    const auto numbered = [&](int number) {
        const std::string suffix = number == 0 ? std::string() : "_" + std::to_string(number);
        const std::size_t used = std::min(ending.size() + suffix.size(), maximumFileNameSize - 1);
        return shortened(legal, maximumFileNameSize - used) + suffix;
    };
    int& number = _nextNumbers[tq_caseFolded(numbered(0) + ending)];
    while (!_taken.insert(tq_caseFolded(numbered(number) + ending)).second) {
        ++number;
    }
    return TQString(numbered(number++).c_str());
}

void correctFileNameUnique(const TQString& directory, TQString& name, const TQString& extension) {
    name = TQUniqueFileNames(directory).take(name, extension);
}

std::FILE* tq_fopen(const TQString& path, const char* mode) {
    const fs::path file = tq_filesystemPath(path);
    std::error_code error;
    if (file.empty() || fs::is_directory(file, error)) {
        errno = file.empty() ? ENOENT : EISDIR;
        return nullptr;
    }
    return tq_openStream(file, mode);
}

int tq_fclose(std::FILE* stream) {
    // Who opened the stream owned it; a C stream has no type that could say so.
    return stream == nullptr || std::fclose(stream) == 0 ? 0 : 1; // NOLINT(cppcoreguidelines-owning-memory)
}

std::filesystem::path tq_filesystemPath(const TQString& path) {
    const std::string utf8 = path.utf8();
    if (utf8.find('\0') != std::string::npos) {
        return {};
    }
    const std::string bytes = tq_pathBytesFromText(utf8);
    return std::u8string(bytes.begin(), bytes.end());
}

TQString tq_stringFromPath(const std::filesystem::path& path) {
    try {
        const std::u8string utf8 = path.generic_u8string();
        return TQString(tq_textFromPathBytes(std::string(utf8.begin(), utf8.end())).c_str());
    } catch (const std::system_error&) { // a Windows name that is not valid UTF-16
        return {};
    }
}
