#include "tools/tqproj/UnpackCommand.h"

#include "support/TQPath.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/DocumentFile.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/PathText.h"

#include <system_error>
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
    constexpr bool inDocument = true;
    const bool isWhole = document.unarchiveFrom(&stream, inDocument) && stream.bytesLeft() == 0;
    ExitCode code = ExitCode::Success;
    if (!isWhole) {
        code = file.reportDamage(document.newListOfProjNames()->count() > 0, messages, _diagnostics);
    }
    messages.take();
    std::error_code error;
    if (!document.archiveNecessaryProj(tq_stringFromPath(_options.directory), error)) {
        const std::string reason = error ? error.message() : messages.take();
        _diagnostics.reportProblem("cannot write all projections into " + textOf(_options.directory) +
                                   (reason.empty() ? "" : ": " + reason));
        code = ExitCode::Failure;
    }
    return code;
}
