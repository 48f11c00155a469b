#include "tools/tqproj/OutputFile.h"

#include "support/TQReplacementFile.h"
#include "tools/tqproj/PathText.h"

std::string writeOutputFile(const std::filesystem::path& path, std::string_view bytes) {
    TQReplacementFile file;
    const bool isWritten = file.open(tq_stringFromPath(path)) && file.write(bytes) && file.commit();
    return isWritten ? std::string() : "cannot write " + textOf(path) + ": " + file.error().message();
}
