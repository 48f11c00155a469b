#pragma once

#include "TQSystemWExport.h"

#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>

/// A line as it stands in a text file, without its end. Internal to the libraries of the project: the header
/// is not installed.
struct TQRawLine {
    std::string bytes;   ///< the line, cut at the limit
    bool hasEnd = false; ///< whether a line end stood behind it; a last line may have none
    bool isCut = false;  ///< whether it had more than the limit
};

/// The next line of a stream, "\n" or "\r\n" taken off; nothing at the end of the file and when it cannot be
/// read. What a line has beyond the limit is read and forgotten, up to 256 MiB: a longer line cannot be
/// read, so that no device without end keeps the reader. A NUL becomes a blank.
/// @param stream the stream, open for reading
/// @param maximum the most characters of UTF-8 to keep
TQSYSTEMW_EXPORT std::optional<TQRawLine> tq_nextRawLine(std::FILE* stream, std::size_t maximum);
