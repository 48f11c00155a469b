#pragma once

#include "TQSystemWExport.h"

#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

// The only calls of the system that the C++ library does not offer. Internal: the header is not installed.

/// The file of the shared library (or program) whose code or data holds an address; absolute, links
/// resolved. Empty when the system cannot tell.
/// @param address the address of an object with static storage duration
TQSYSTEMW_EXPORT std::filesystem::path tq_libraryPath(const void* address);

/// Makes the standard streams of a filter: bytes pass unchanged, and a reader that goes away shows as a
/// failed write instead of ending the process. A stream that the process was started without fails when it is
/// used; without this the first file that is opened would be in its place.
TQSYSTEMW_EXPORT void tq_prepareStandardStreams();

/// Has a function called when the user or the system ends the process (the signals SIGINT, SIGTERM and
/// SIGHUP, on Windows what consoles send), which ends after that as it would have. What the process was
/// started to ignore stays ignored.
/// @param function the function; it must be fit for a handler of signals
TQSYSTEMW_EXPORT void tq_callOnTermination(void (*function)());

/// Holds back what tq_callOnTermination() names from the calling thread, until it is let go; a process of one
/// thread lives on so long. On Windows nothing is held back.
/// @return what is held back from now on and was not before, for tq_letTerminationGo()
TQSYSTEMW_EXPORT unsigned tq_holdTermination();

/// Lets go what tq_holdTermination() held back; what came meanwhile comes now.
/// @param held its answer
TQSYSTEMW_EXPORT void tq_letTerminationGo(unsigned held);

/// The number of the process.
TQSYSTEMW_EXPORT unsigned long tq_processId();

/// The arguments of the process in UTF-8, the program's name first.
/// @param argc as for main()
/// @param argv as for main()
TQSYSTEMW_EXPORT std::vector<std::string> tq_utf8Arguments(int argc, const char* const* argv);

/// Whether the processor and the system have AVX2 with FMA; false on other platforms than x86-64.
TQSYSTEMW_EXPORT bool tq_processorHasAVX2();

/// Whether the processor and the system have AVX2 with FMA and AVX-512 F, DQ, CD, BW and VL; false on other
/// platforms than x86-64.
TQSYSTEMW_EXPORT bool tq_processorHasAVX512();

/// Whether a C stream is connected to a terminal; false for null.
/// @param stream the stream, or null
TQSYSTEMW_EXPORT bool tq_isTerminal(std::FILE* stream);

/// The user's language as the system names it, "de" or "de_CH"; "en" when the system names none.
TQSYSTEMW_EXPORT std::string tq_systemLanguage();

/// An environment variable as UTF-8; empty when it is not set.
/// @param name the variable's name, ASCII
TQSYSTEMW_EXPORT std::string tq_environmentText(const char* name);

/// std::fopen() for a path of any characters; null on failure, the caller closes the stream.
/// @param path the file
/// @param mode the mode as for std::fopen(), ASCII
TQSYSTEMW_EXPORT std::FILE* tq_openStream(const std::filesystem::path& path, const char* mode);

/// Why a call of the C library failed just now, as errno tells; an input/output error when it does not.
TQSYSTEMW_EXPORT std::error_code tq_lastError();

/// Hands what was written to a C stream to the storage device; what has no device has nothing to hand over.
/// @param stream the stream, not null
/// @return why that failed, or no error
TQSYSTEMW_EXPORT std::error_code tq_synchronize(std::FILE* stream);

/// Hands the entries of a directory to the storage device, where the system offers that.
/// @param directory the directory
TQSYSTEMW_EXPORT void tq_synchronizeDirectory(const std::filesystem::path& directory);

/// Removes a file; may be called in a handler of signals.
/// @param file the path, ended by 0
TQSYSTEMW_EXPORT void tq_removeFile(const std::filesystem::path::value_type* file) noexcept;
