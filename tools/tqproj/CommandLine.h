#pragma once

/// Reads the command line, does what it asks for, and answers the exit code.
/// @param argc as for main()
/// @param argv as for main(), in UTF-8
int runCommandLine(int argc, const char* const* argv);
