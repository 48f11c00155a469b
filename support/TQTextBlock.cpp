#include "support/TQTextBlock.h"

#include "support/TQFile.h"
#include "support/TQMessages.h"

const char* TQTextBlock::meaningOf(int code) const {
    if (className == nullptr) {
        return nullptr;
    }
    if (code < 0) {
        return "a line is missing or not understood"; // one code for every failure
    }
    return code == openFailed         ? "the file cannot be opened"
           : code == headerUnreadable ? "the first line of a block is missing or ends in no version"
           : code == versionUnknown   ? "the version of a block is not known"
                                      : nullptr;
}

int TQTextBlock::beginReading(TQFile& file, bool withHeader, int& version) const {
    if (file.open(TQFile::Read) != 0) {
        return openFailed;
    }
    if (withHeader && file.readBlockVersion() != 0) {
        return headerUnreadable;
    }
    version = file.blockVersion();
    if (!everyVersionIsRead && (version < oldestVersion || version > newestVersion)) {
        tq_perrorf("%s::loadFromFile: Unknown version\n", className);
        return versionUnknown;
    }
    return 0;
}

int TQTextBlock::beginWriting(TQFile& file, bool withHeader) const {
    if (file.open(TQFile::Write) != 0) {
        return openFailed;
    }
    if (!withHeader) {
        return 0;
    }
    file.setBlockVersion(newestVersion);
    const bool failed =
        file.writeText(tq_format("%s v", className).c_str()) != 0 || file.writeBlockVersion() != 0;
    return failed ? writeFailed : 0;
}
