#include "tools/tqproj/InspectCommand.h"

#include "support/TQFormat.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/OutputBuffer.h"

#include <memory>

namespace {

/// The class names and versions that stand at a place one behind the other, the outermost block first.
std::string tagsAt(std::string_view bytes, std::size_t offset) {
    constexpr std::string_view prefix = "TQ";
    constexpr std::size_t versionSize = 2;
    std::string tags;
    while (offset < bytes.size()) {
        const std::size_t length = static_cast<unsigned char>(bytes[offset]);
        const std::string_view name = bytes.substr(offset + 1, length);
        const std::size_t version = offset + 1 + length;
        if (!name.starts_with(prefix) || version + versionSize > bytes.size()) {
            break;
        }
        tags += (tags.empty() ? "" : " / ") + std::string(name) + " " +
                std::to_string(static_cast<unsigned char>(bytes[version]));
        offset = version + versionSize;
    }
    return tags;
}

std::string described(const TQEllipsoid& ellipsoid) {
    return tq_textOfName(ellipsoid.name()).utf8() +
           tq_format(", a %.13g m, 1/f %.12g, %s", ellipsoid.semiMajorAxis(), ellipsoid.inverseFlattening(),
                     ellipsoid.hasDatumShift() ? "datum shift" : "no datum shift");
}

std::string described(const TQProjection& projection) {
    const TQEllipsoid* const ellipsoid = projection.ellipsoid();
    return tq_textOfName(projection.name()).utf8() + ", " + projection.typeName().utf8() +
           (ellipsoid != nullptr ? " on " + tq_textOfName(ellipsoid->name()).utf8() : "");
}

} // namespace

InspectCommand::InspectCommand(const InspectOptions& options, OutputBuffer& output, Diagnostics& diagnostics)
    : _output(output), _diagnostics(diagnostics), _path(options.path), _file(options.path),
      _stream(_file.stream()) {}

ExitCode InspectCommand::run() {
    if (!_file.problem().empty()) {
        _diagnostics.reportProblem(_file.problem());
        return ExitCode::Failure;
    }
    _messages.take(); // of the catalogue
    ExitCode code = ExitCode::Success;
    const bool isWhole = inspectEllipsoids() && inspectProjections();
    if (!isWhole || !_messages.isEmpty()) {
        _diagnostics.reportProblem(_path + " is damaged or no document of projections" +
                                   (_messages.isEmpty() ? "" : ": " + _messages.take()));
        code = _hasBlocks ? ExitCode::Incomplete : ExitCode::Failure;
    }
    return graver(code, _output.finish(_diagnostics));
}

bool InspectCommand::inspectEllipsoids() {
    for (std::int32_t count = beginBlock("TQEllMgr", "ellipsoids"); count > 0; --count) {
        const std::size_t offset = position();
        auto ellipsoid = std::make_unique<TQEllipsoid>(&_stream);
        if (_stream.failed()) {
            return false;
        }
        addLine(offset, described(*ellipsoid));
        _document.ellipsoidManager().addEllipsoid(std::move(ellipsoid));
    }
    return !_stream.failed();
}

bool InspectCommand::inspectProjections() {
    constexpr std::size_t referenceAndTypeCode = 5;
    for (std::int32_t count = beginBlock("TQProjMgr", "projections"); count > 0; --count) {
        const std::size_t offset = position() + referenceAndTypeCode;
        const std::unique_ptr<TQProjection> projection = _document.newProjFromStream(&_stream);
        if (projection == nullptr) {
            return false;
        }
        addLine(offset, described(*projection));
    }
    return !_stream.failed();
}

/// Reads the head of the block of a registry.
/// @return how many objects follow; 0 when they cannot be read
std::int32_t InspectCommand::beginBlock(const char* className, const char* content) {
    const std::size_t offset = position();
    std::int32_t count = 0;
    if (_stream.version(className) != 0) {
        _stream.fail();
    }
    _stream.read(count);
    if (!_stream.failed()) {
        addLine(offset, std::to_string(count) + " " + content);
    }
    return count;
}

std::size_t InspectCommand::position() const {
    return _file.bytes().size() - static_cast<std::size_t>(_stream.bytesLeft());
}

void InspectCommand::addLine(std::size_t offset, const std::string& content) {
    _output.text() += std::to_string(offset) + "\t" + tagsAt(_file.bytes(), offset) + "\t" +
                      withoutControls(content) + "\n";
    _output.flushIfLarge();
    _hasBlocks = true;
}
