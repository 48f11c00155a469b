#include "support/TQPlatform.h"
#include "support/TQReplacementFile.h"
#include "tools/tqproj/CommandLine.h"

int main(int argc, char** argv) {
    tq_callOnTermination(&TQReplacementFile::removeTemporaryFiles);
    std::vector<std::string> arguments = tq_utf8Arguments(argc, argv);
    if (!arguments.empty()) {
        arguments.erase(arguments.begin()); // the program's name
    }
    return runCommandLine(arguments);
}
