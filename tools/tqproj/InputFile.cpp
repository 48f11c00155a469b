#include "tools/tqproj/InputFile.h"

#include <cerrno>
#include <filesystem>

namespace {

constexpr std::size_t blockSize = std::size_t{1} << 16;

std::filesystem::path pathFromUtf8(const std::string& text) {
    return std::filesystem::path(std::u8string(text.begin(), text.end()));
}

std::error_code openForReading(std::filebuf& file, const std::string& path) {
    std::error_code ignored;
    if (std::filesystem::is_directory(pathFromUtf8(path), ignored)) {
        return std::make_error_code(std::errc::is_a_directory);
    }
    errno = 0;
    if (file.open(pathFromUtf8(path), std::ios_base::in | std::ios_base::binary) != nullptr) {
        return {};
    }
    return errno != 0 ? std::error_code(errno, std::generic_category())
                      : std::make_error_code(std::errc::io_error);
}

} // namespace

InputFile::InputFile(const std::string& argument, std::streambuf& standardInput)
    : _name(argument), _source(&standardInput) {
    if (isStandardInput(argument)) {
        _name = "<stdin>";
        return;
    }
    _block.resize(blockSize);
    _file.pubsetbuf(_block.data(), static_cast<std::streamsize>(_block.size()));
    _source = &_file;
    _error = openForReading(_file, argument);
}

std::error_code InputFile::openingError(const std::string& path) {
    std::filebuf file;
    return openForReading(file, path);
}

std::uint64_t InputFile::sizeOf(const std::string& argument) {
    if (isStandardInput(argument)) {
        return 0;
    }
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(pathFromUtf8(argument), error);
    return error ? 0 : static_cast<std::uint64_t>(size);
}
