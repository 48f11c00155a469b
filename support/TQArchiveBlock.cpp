#include "support/TQArchiveBlock.h"

#include "support/TQMessages.h"
#include "support/TQReadStream.h"

#include <array>

int tq_readKnownVersion(TQReadStream* stream, const char* className, int newestVersion) {
    const int version = stream->version(className);
    if (version >= 0 && version <= newestVersion) {
        return version;
    }
    tq_perrorf("%s::unarchiveFrom(TQReadStream *): version %d is unknown.\n", className, version);
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
