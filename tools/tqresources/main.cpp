#include "support/TQPlatform.h"
#include "tools/tqresources/ResourceTree.h"

#include <cstdio>
#include <exception>

// Writes the resource tree from the EPSG data set and the lists beside this file, or those of a directory:
//
//   tqresources resources/resProj [LISTS]
int main(int argc, char** argv) {
    try {
        const std::vector<std::string> arguments = tq_utf8Arguments(argc, argv);
        if (arguments.size() != 2 && arguments.size() != 3) {
            std::fputs("usage: tqresources DIRECTORY [LISTS]\n", stderr);
            return 2;
        }
        const std::string lists = arguments.size() == 3 ? arguments[2] : TQ_RESOURCE_LISTS;
        return ResourceTree(arguments[1], lists).write() ? 0 : 1;
    } catch (const std::exception& fault) {
        std::fprintf(stderr, "tqresources: %s\n", fault.what());
        return 1;
    }
}
