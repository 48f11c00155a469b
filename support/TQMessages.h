#pragma once

#include "TQSystemWExport.h"

#include "support/TQFormat.h"
#include "support/TQMessageScope.h"
#include "support/TQString.h"

#include <functional>
#include <string_view>

/// Receives every diagnostic line as UTF-8, as it was given: usually, but not always, with a line end.
using TQErrorPrinter = std::function<void(std::string_view utf8)>;

/// Sets the printer of diagnostic lines and returns the one before, to be put back. Printers must not
/// throw; they are called on the thread that has something to say.
/// @param printer the printer; empty for the default one, which writes to the standard error stream and
///        adds a line end where there is none
TQSYSTEMW_EXPORT TQErrorPrinter tq_setErrorPrinter(TQErrorPrinter printer);

/// Hands a line to the printer, whatever a TQMessageScope says; for the functions below.
/// @param utf8 the line as UTF-8
TQSYSTEMW_EXPORT void tq_printError(std::string_view utf8);

/// Prints one diagnostic line.
/// @param text the line; null prints nothing, bytes that are not UTF-8 are taken as the default encoding
TQSYSTEMW_EXPORT void tq_perror(const char* text);

/// Prints one diagnostic line.
/// @param text the line
TQSYSTEMW_EXPORT void tq_perror(const TQString& text);

/// Prints one diagnostic line.
/// @param utf8 the line as UTF-8
TQSYSTEMW_EXPORT void tq_perror(std::string_view utf8);

/// Prints one diagnostic line.
/// @param text the line as UTF-16; null prints nothing
TQSYSTEMW_EXPORT void tq_wperror(const char16_t* text);

/// Prints one diagnostic line made by tq_format(). To a TQMessageScope lines of one format are the same.
/// @param format the printf-style format
/// @param arguments its arguments
template <class... Arguments>
void tq_perrorf(std::string_view format, const Arguments&... arguments) {
    if (TQMessageScope::lets(format)) {
        tq_printError(tq_format(format, arguments...));
    }
}
