#include "tools/tqproj/InspectCommand.h"

#include "support/TQArchiveBlock.h"
#include "support/TQFormat.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/OutputBuffer.h"

#include <algorithm>
#include <cctype>
#include <memory>

namespace {

bool isOfClassName(char character) {
    return std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '_';
}

/// The class names and versions that stand at a place one behind the other, the outermost block first.
std::string tagsAt(std::string_view bytes, std::size_t offset) {
    constexpr std::string_view prefix = "TQ";
    constexpr std::size_t versionSize = 2;
    std::string tags;
    while (offset < bytes.size()) {
        const std::size_t length = static_cast<unsigned char>(bytes[offset]);
        const std::string_view name = bytes.substr(offset + 1, length);
        const std::size_t version = offset + 1 + length;
        if (!name.starts_with(prefix) || !std::ranges::all_of(name, isOfClassName) ||
            version + versionSize > bytes.size()) {
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
    : _output(output), _diagnostics(diagnostics), _file(options.path), _stream(_file.stream()) {}

ExitCode InspectCommand::run() {
    if (!_file.problem().empty()) {
        _diagnostics.reportProblem(_file.problem());
        return ExitCode::Failure;
    }
    _messages.take(); // of the catalogue
    const bool isWhole = inspectEllipsoids() && inspectProjections() && _stream.bytesLeft() == 0;
    const ExitCode code =
        isWhole ? ExitCode::Success : _file.reportDamage(_hasBlocks, _messages, _diagnostics);
    return graver(code, _output.finish(_diagnostics));
}

bool InspectCommand::inspectEllipsoids() {
    for (std::int32_t count = beginBlock("TQEllMgr", "ellipsoid"); count > 0; --count) {
        const std::size_t offset = position();
        auto ellipsoid = std::make_unique<TQEllipsoid>(&_stream);
        if (_stream.failed() || _stream.hasUnknownBlock()) {
            return false;
        }
        addLine(offset, described(*ellipsoid));
        _document.ellipsoidManager().addEllipsoid(std::move(ellipsoid));
    }
    return !_stream.failed();
}

bool InspectCommand::inspectProjections() {
    constexpr std::size_t referenceAndTypeCode = 5; // in front of a projection's block, see docs/formats.md
    for (std::int32_t count = beginBlock("TQProjMgr", "projection"); count > 0; --count) {
        const std::size_t offset = position() + referenceAndTypeCode;
        const std::unique_ptr<TQProjection> projection = _document.newProjFromStream(&_stream);
        if (projection == nullptr) {
            return false;
        }
        addLine(offset, described(*projection));
    }
    return !_stream.failed();
}

/// Reads the head of the block of a registry of things that a word names in the singular.
/// @return how many objects follow; 0 when they cannot be read, which is reported
std::int32_t InspectCommand::beginBlock(const char* className, const char* content) {
    const std::size_t offset = position();
    std::int32_t count = 0;
    constexpr int newestVersion = 0;
    tq_readKnownVersion(&_stream, className, newestVersion);
    _stream.read(count);
    if (count < 0 || _stream.hasUnknownBlock()) {
        _stream.fail();
    }
    if (!_stream.failed()) {
        addLine(offset, std::to_string(count) + " " + content + (count == 1 ? "" : "s"));
    }
    return _stream.failed() ? 0 : count;
}

std::size_t InspectCommand::position() const {
    return _file.bytes().size() - static_cast<std::size_t>(_stream.bytesLeft());
}

void InspectCommand::addLine(std::size_t offset, const std::string& content) {
    const std::string tags = withoutControls(tagsAt(_file.bytes(), offset));
    _output.text() += std::to_string(offset) + "\t" + tags + "\t" + withoutControls(content) + "\n";
    _output.flushIfLarge();
    _hasBlocks = true;
}
