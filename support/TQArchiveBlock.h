#pragma once

#include "TQSystemWExport.h"

#include "support/TQString.h"

class TQReadStream;

/// Reads the version of a class's block; notes one that the class does not know in the stream and reports it
/// with the line
/// "<class name>::unarchiveFrom(TQReadStream *): version %d is unknown.".
/// @param stream the stream to read from
/// @param className the class that the block belongs to
/// @param newestVersion the newest version that the class reads; it reads all from 0 on
/// @return the version, or -1 for an unknown one: the class then reads nothing more
TQSYSTEMW_EXPORT int tq_readKnownVersion(TQReadStream* stream, const char* className, int newestVersion);

/// Reads a name as older block versions store it: a counted string of at most 1024 bytes, of which the
/// last is kept for the end mark.
/// @param stream the stream to read from
TQSYSTEMW_EXPORT TQString tq_readCountedString(TQReadStream* stream);
