#pragma once

#include <string>
#include <vector>

/// Reads the command line, does what it asks for, and answers the exit code.
/// @param arguments the arguments in UTF-8, without the program's name
int runCommandLine(const std::vector<std::string>& arguments);
