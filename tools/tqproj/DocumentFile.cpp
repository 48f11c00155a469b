#include "tools/tqproj/DocumentFile.h"

#include "support/TQWriteMemStream.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/InputFile.h"
#include "tools/tqproj/LibraryMessages.h"

#include <array>
#include <iostream>

DocumentFile::DocumentFile(const std::string& argument) : _name(argument) {
    InputFile file(argument, *std::cin.rdbuf());
    if (file.error()) {
        _problem = "cannot read " + _name + ": " + file.error().message();
    } else {
        read(file.source());
    }
}

void DocumentFile::read(std::streambuf& source) {
    constexpr std::size_t blockSize = std::size_t{1} << 16;
    std::array<char, blockSize> block{};
    try {
        std::streamsize count = 0;
        while (_bytes.size() <= greatestSize && (count = source.sgetn(block.data(), block.size())) > 0) {
            _bytes.append(block.data(), static_cast<std::size_t>(count));
        }
    } catch (const std::ios_base::failure& error) { // as a file buffer tells of a read error
        _problem = "cannot read " + _name + ": " + error.code().message();
    }
    if (_bytes.size() > greatestSize) {
        _problem = "cannot read " + _name + ": it is larger than " + std::to_string(greatestSize) + " bytes";
    }
}

TQReadMemStream DocumentFile::stream() const {
    constexpr int version = 0;
    return TQReadMemStream(_bytes.data(), _bytes.size(), version, TQProjMgr::FromDocument);
}

ExitCode DocumentFile::reportDamage(bool hasContent, LibraryMessages& messages,
                                    Diagnostics& diagnostics) const {
    const std::string reason = messages.isEmpty() ? "" : ": " + messages.take();
    diagnostics.reportProblem(_name + " is damaged or no document of projections" + reason);
    return hasContent ? ExitCode::Incomplete : ExitCode::Failure;
}

std::string DocumentFile::bytesOf(const TQProjMgr& manager) {
    TQWriteMemStream stream;
    manager.archiveTo(&stream);
    return {stream.getMemory().data(), stream.getMemory().size()};
}
