#include "tools/tqproj/PackCommand.h"

#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/DocumentFile.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/OutputFile.h"
#include "tools/tqproj/ProjectionLibrary.h"
#include "tools/tqproj/ReadyProjection.h"
#include "tools/tqproj/RereadDocument.h"
#include "tools/tqproj/TextSearch.h"

#include <memory>
#include <set>
#include <utility>

namespace {

int distinct(const std::vector<std::string>& names) {
    return static_cast<int>(std::set<std::string>(names.begin(), names.end()).size());
}

} // namespace

PackCommand::PackCommand(PackOptions options, OutputBuffer& output, Diagnostics& diagnostics)
    : _options(std::move(options)), _output(output), _diagnostics(diagnostics) {}

ExitCode PackCommand::run() {
    LibraryMessages messages;
    ProjectionLibrary library(_options.directory);
    if (!library.problem().empty()) {
        return refuse(library.problem());
    }
    messages.take(); // of projections that nobody asked for
    const ExitCode code = library.reportComplaints(_diagnostics);
    constexpr bool withResources = false;
    TQProjMgr document(withResources);
    for (const std::string& name : _options.names) {
        if (!library.complaintAbout(name).empty()) {
            return ExitCode::Failure; // it has been reported
        }
        if (!library.hasOwn(name)) {
            return refuse("no projection is called " + printableText(name) +
                          nearNamesText(name, library.names()));
        }
        if (const std::string reason = makeReady(*library.projection(name), messages); !reason.empty()) {
            return refuse("cannot pack " + printableText(name) + ": " + reason);
        }
        library.copyTo(document, name);
    }
    if (document.newListOfProjNames()->count() != distinct(_options.names)) {
        return refuse("not every projection can be packed" +
                      (messages.isEmpty() ? "" : ": " + messages.take()));
    }
    const std::string bytes = DocumentFile::bytesOf(document);
    if (const std::string difference = differenceIn(bytes, library); !difference.empty()) {
        return refuse(difference);
    }
    return graver(code, writeOutput(_options.path, bytes, _output, _diagnostics));
}

/// What the document would change in a projection, as a sentence; empty when it keeps all.
std::string PackCommand::differenceIn(std::string_view bytes, ProjectionLibrary& library) const {
    RereadDocument document(bytes);
    for (const std::string& name : _options.names) {
        const std::unique_ptr<TQProjection> filed = library.newFromFile(name);
        const std::string difference =
            document.differenceFrom(filed != nullptr ? *filed : *library.projection(name));
        if (!difference.empty()) {
            return "the document would change " + printableText(name) + ": " + difference;
        }
    }
    return "";
}

ExitCode PackCommand::refuse(const std::string& problem) {
    _diagnostics.reportProblem(problem);
    return ExitCode::Failure;
}
