#pragma once

#include <fstream>
#include <string>

/// The name of the processor as Linux has it; "unknown processor" elsewhere.
inline std::string processorName() {
    std::ifstream processors("/proc/cpuinfo");
    for (std::string line; std::getline(processors, line);) {
        if (line.starts_with("model name")) {
            return line.substr(line.find(':') + 2);
        }
    }
    return "unknown processor";
}
