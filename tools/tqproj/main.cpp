#include "support/TQPlatform.h"
#include "tools/tqproj/CommandLine.h"

int main(int argc, char** argv) {
    std::vector<std::string> arguments = tq_utf8Arguments(argc, argv);
    if (!arguments.empty()) {
        arguments.erase(arguments.begin()); // the program's name
    }
    return runCommandLine(arguments);
}
