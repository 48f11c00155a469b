#include "tools/tqproj/PackCommand.h"

#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/DocumentFile.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/ProjectionLibrary.h"
#include "tools/tqproj/TextSearch.h"

#include <utility>

PackCommand::PackCommand(PackOptions options, Diagnostics& diagnostics)
    : _options(std::move(options)), _diagnostics(diagnostics) {}

ExitCode PackCommand::run() {
    const LibraryMessages messages; // of projections that nobody asked for
    ProjectionLibrary library(_options.directory);
    if (!library.problem().empty()) {
        return refuse(library.problem());
    }
    constexpr bool withResources = false;
    TQProjMgr document(withResources);
    for (const std::string& name : _options.names) {
        if (!library.copyTo(document, name)) {
            return refuse("no projection is called " + printableText(name) +
                          nearNamesText(name, library.names()));
        }
    }
    if (!DocumentFile::write(document, _options.path)) {
        return refuse("cannot write " + _options.path);
    }
    return ExitCode::Success;
}

ExitCode PackCommand::refuse(const std::string& problem) {
    _diagnostics.reportProblem(problem);
    return ExitCode::Failure;
}
