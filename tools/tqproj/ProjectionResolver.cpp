#include "tools/tqproj/ProjectionResolver.h"

#include "manager/TQProjectionFile.h"
#include "projection/TQProjection.h"
#include "support/TQString.h"
#include "tools/tqproj/InputFile.h"
#include "tools/tqproj/LibraryMessages.h"

std::unique_ptr<TQProjection> ProjectionResolver::resolve(const std::string& argument) {
    std::unique_ptr<TQProjection> projection =
        TQProjectionFile::createProjectionFromPath(TQString(argument.c_str()));
    const std::string reasons = _messages.take();
    if (projection == nullptr) {
        const std::error_code error = InputFile::openingError(argument);
        _problem = "cannot read a projection from " + argument + ": ";
        _problem += error ? error.message() : reasons.empty() ? "it is not a projection file" : reasons;
    }
    return projection;
}
