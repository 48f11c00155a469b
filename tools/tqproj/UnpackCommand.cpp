#include "tools/tqproj/UnpackCommand.h"

#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/DocumentFile.h"
#include "tools/tqproj/LibraryMessages.h"

#include <utility>

UnpackCommand::UnpackCommand(UnpackOptions options, Diagnostics& diagnostics)
    : _options(std::move(options)), _diagnostics(diagnostics) {}

ExitCode UnpackCommand::run() {
    const DocumentFile file(_options.path);
    if (!file.problem().empty()) {
        _diagnostics.reportProblem(file.problem());
        return ExitCode::Failure;
    }
    LibraryMessages messages;
    constexpr bool withResources = false;
    TQProjMgr document(withResources);
    messages.take(); // of the catalogue
    TQReadMemStream stream = file.stream();
    document.unarchiveFrom(&stream);
    ExitCode code = ExitCode::Success;
    if (stream.failed() || !messages.isEmpty()) {
        const std::string reason = messages.isEmpty() ? "" : ": " + messages.take();
        _diagnostics.reportProblem(_options.path + " is damaged or no document of projections" + reason);
        code = document.newListOfProjNames()->count() == 0 ? ExitCode::Failure : ExitCode::Incomplete;
    }
    if (!document.archiveNecessaryProj(TQString(_options.directory.c_str()))) {
        _diagnostics.reportProblem("cannot write all projections into " + _options.directory);
        code = ExitCode::Failure;
    }
    return code;
}
