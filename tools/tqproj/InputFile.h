#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <streambuf>
#include <string>
#include <system_error>
#include <vector>

/// One input of the command: a named file or the standard input.
class InputFile {
  public:
    /// Opens a file. The argument "-" stands for the standard input, which messages call "<stdin>".
    /// @param argument an argument of the command line: a path, or "-"
    /// @param standardInput the source of the standard input; must outlive this object
    InputFile(const std::string& argument, std::streambuf& standardInput);

    /// The input as messages call it.
    const std::string& name() const { return _name; }

    /// Where the bytes come from; to be used only when error() holds none.
    std::streambuf& source() { return *_source; }

    /// Why the file could not be opened; no error when it could.
    const std::error_code& error() const { return _error; }

    /// Whether a file argument stands for the standard input.
    /// @param argument a file argument of the command
    static bool isStandardInput(const std::string& argument) { return argument == "-"; }

    /// Why a file cannot be opened; no error when it can.
    /// @param path the file
    static std::error_code openingError(const std::filesystem::path& path);

    /// The size of a file in bytes; 0 when it has none that could be told beforehand.
    /// @param argument an argument of the command line: a path, or "-"
    static std::uint64_t sizeOf(const std::string& argument);

  private:
    std::string _name;
    std::vector<char> _block; // the file's buffer, so it is declared before the file
    std::filebuf _file;
    std::streambuf* _source; // the file above, or the standard input, which the caller owns
    std::error_code _error;
};
