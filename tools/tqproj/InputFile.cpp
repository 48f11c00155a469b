#include "tools/tqproj/InputFile.h"

#include "tools/tqproj/PathText.h"

#include <cerrno>

namespace {

constexpr std::size_t blockSize = std::size_t{1} << 16;

std::error_code openForReading(std::filebuf& file, const std::filesystem::path& path) {
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) {
        return std::make_error_code(std::errc::is_a_directory);
    }
    errno = 0;
    if (file.open(path, std::ios_base::in | std::ios_base::binary) != nullptr) {
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
    _error = openForReading(_file, pathOf(argument));
}

std::error_code InputFile::openingError(const std::filesystem::path& path) {
    std::filebuf file;
    return openForReading(file, path);
}

std::uint64_t InputFile::sizeOf(const std::string& argument) {
    if (isStandardInput(argument)) {
        return 0;
    }
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(pathOf(argument), error);
    return error ? 0 : static_cast<std::uint64_t>(size);
}
