#pragma once

#include "TQSystemWExport.h"

#include "support/TQString.h"

#include <string_view>

class TQReadStream;

/// Reads the version of a class's block; notes one that the class does not know in the stream and reports it
/// with the line
/// "<class name>::unarchiveFrom(TQReadStream *): version %d is unknown.".
/// @param stream the stream to read from
/// @param className the class that the block belongs to
/// @param newestVersion the newest version that the class reads; it reads all from 0 on
/// @return the version, or -1 for an unknown one: the class then reads nothing more
TQSYSTEMW_EXPORT int tq_readKnownVersion(TQReadStream* stream, const char* className, int newestVersion);

/// Reads the version of a block and reports one that its reader does not know with the line "<reader>:
/// version %d is unknown.".
/// @param stream the stream to read from
/// @param blockName the name in the block's version tag
/// @param newestVersion the newest version that the reader knows
/// @param reader the reader with its class and arguments, as messages name it
/// @return the version, or -1 for an unknown one: nothing more is read then
TQSYSTEMW_EXPORT int tq_readKnownVersion(TQReadStream* stream, const char* blockName, int newestVersion,
                                         std::string_view reader);

/// Reads a name as older block versions store it: a counted string of at most 1024 bytes, of which the
/// last is kept for the end mark.
/// @param stream the stream to read from
TQSYSTEMW_EXPORT TQString tq_readCountedString(TQReadStream* stream);
