#pragma once

#include "testing/TemporaryDirectory.h"
#include "tests/tools/ProjectionFiles.h"

#include <cstdlib>
#include <string>

/// Runs the built program through the shell, with its streams in files of a directory of its own.
class Program {
  public:
    Program() { _directory.fileWith("world.proj", projectionfiles::WorldMercator); }

    const TemporaryDirectory& directory() const { return _directory; }

    /// Runs the program; arguments are written as in a shell and may redirect streams. "@" stands for the
    /// projection file.
    int run(const std::string& arguments, const std::string& standardInput = {}) {
        _directory.fileWith("in", standardInput);
        return shell(quoted(TQPROJ_PROGRAM) + " " + withProjection(arguments) + " < " + path("in") + " > " +
                     path("out") + " 2> " + path("err"));
    }

    std::string out() const { return _directory.bytesOf("out"); }
    std::string err() const { return _directory.bytesOf("err"); }

    std::string path(const std::string& name) const { return quoted((_directory.path() / name).string()); }

    /// Runs a line of the shell and answers its exit code.
    static int shell(const std::string& line) {
        const int status = std::system(line.c_str());
#ifdef WEXITSTATUS
        return WEXITSTATUS(status);
#else
        return status;
#endif
    }

    std::string withProjection(std::string arguments) const {
        const std::size_t mark = arguments.find('@');
        return mark == std::string::npos ? arguments : arguments.replace(mark, 1, path("world.proj"));
    }

    static std::string quoted(const std::string& text) { return '"' + text + '"'; }

  private:
    TemporaryDirectory _directory;
};
