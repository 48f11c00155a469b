#include "support/TQArchiveBlock.h"

#include "support/TQFormat.h"
#include "support/TQMessages.h"
#include "support/TQReadStream.h"

#include <array>

int tq_readKnownVersion(TQReadStream* stream, const char* className, int newestVersion) {
    return tq_readKnownVersion(stream, className, newestVersion,
                               tq_format("%s::unarchiveFrom(TQReadStream *)", className));
}

int tq_readKnownVersion(TQReadStream* stream, const char* blockName, int newestVersion,
                        std::string_view reader) {
    const int version = stream->version(blockName);
    if (version >= 0 && version <= newestVersion) {
        return version;
    }
    tq_perrorf("%s: version %d is unknown.\n", reader, version);
    stream->noteUnknownBlock();
    return -1;
}

TQString tq_readCountedString(TQReadStream* stream) {
    constexpr int maximum = 1024;
    constexpr bool endsAtNul = true;
    std::array<char, maximum> buffer{};
    stream->read(buffer.data(), maximum, endsAtNul);
    return TQString(buffer.data());
}
