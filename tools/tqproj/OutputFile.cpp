#include "tools/tqproj/OutputFile.h"

#include "support/TQReplacementFile.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/OutputBuffer.h"
#include "tools/tqproj/PathText.h"

bool isStandardOutput(const std::filesystem::path& path) { return path == "-"; }

std::string writeOutputFile(const std::filesystem::path& path, std::string_view bytes) {
    TQReplacementFile file;
    const bool isWritten = file.open(tq_stringFromPath(path)) && file.write(bytes) && file.commit();
    return isWritten ? std::string() : "cannot write " + textOf(path) + ": " + file.error().message();
}

ExitCode writeOutput(const std::filesystem::path& path, std::string_view bytes, OutputBuffer& output,
                     Diagnostics& diagnostics) {
    if (isStandardOutput(path)) {
        output.text() += bytes;
        return output.finish(diagnostics);
    }
    const std::string problem = writeOutputFile(path, bytes);
    if (!problem.empty()) {
        diagnostics.reportProblem(problem);
    }
    return problem.empty() ? ExitCode::Success : ExitCode::Failure;
}
