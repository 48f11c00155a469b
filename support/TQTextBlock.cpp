#include "support/TQTextBlock.h"

#include "support/TQFile.h"
#include "support/TQMessages.h"

int TQTextBlock::beginReading(TQFile& file, bool withHeader, int& version) const {
    if (file.open(TQFile::Read) != 0) {
        return file.failReading(openFailed, "the file cannot be opened");
    }
    if (withHeader && file.readBlockVersion() != 0) {
        return file.failReading(headerUnreadable,
                                "the first line of a block is missing or ends in no version");
    }
    version = file.blockVersion();
    if (!everyVersionIsRead && (version < oldestVersion || version > newestVersion)) {
        tq_perrorf("%s::loadFromFile: Unknown version\n", className);
        return file.failReading(versionUnknown, "the version of a block is not known");
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
