#include "support/TQPolyline.h"

#include "support/TQArchiveBlock.h"
#include "support/TQNumberText.h"
#include "support/TQRawLine.h"
#include "support/TQReadStream.h"
#include "support/TQWriteStream.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <utility>

namespace {

constexpr const char* className = "TQPolyline";
constexpr std::size_t longestLine = 1024;
constexpr std::uint64_t bytesOfPoint = 2 * sizeof(double);

/// Reads the numbers that a line begins with; false when the line or one of the numbers is missing.
bool readNumbers(std::FILE* file, std::span<double* const> numbers) {
    const std::optional<TQRawLine> line = tq_nextRawLine(file, longestLine);
    return line && tq_scanDoubles(line->bytes, numbers) == static_cast<int>(numbers.size());
}

/// The line with the number of points; nothing when it holds none.
std::optional<int> readCount(std::FILE* file) {
    double count = 0.0;
    const std::array<double* const, 1> target{&count};
    const bool isCount = readNumbers(file, target) && count >= 0.0 &&
                         count <= std::numeric_limits<int>::max() && std::trunc(count) == count;
    return isCount ? std::optional(static_cast<int>(count)) : std::nullopt;
}

} // namespace

TQPoint TQPolyline::pointAt(int index) const {
    return index >= 0 && index < count() ? _points[static_cast<std::size_t>(index)] : TQPoint{};
}

void TQPolyline::add(const TQPoint& point) { _points.push_back(point); }

int TQPolyline::readFromFile(std::FILE* file) {
    const std::optional<int> count = file == nullptr ? std::nullopt : readCount(file);
    if (!count) {
        return 1;
    }
    std::vector<TQPoint> points;
    for (int i = 0; i < *count; ++i) {
        TQPoint& point = points.emplace_back();
        const std::array<double* const, 2> coordinates{&point.x, &point.y};
        if (!readNumbers(file, coordinates)) {
            return 1;
        }
    }
    _points = std::move(points);
    return 0;
}

void TQPolyline::archiveTo(TQWriteStream* stream) const {
    stream->declareVersion(className, 0);
    stream->write(static_cast<std::uint32_t>(_points.size()));
    for (const TQPoint& point : _points) {
        point.archiveTo(stream);
    }
}

void TQPolyline::unarchiveFrom(TQReadStream* stream) {
    _points.clear();
    if (tq_readKnownVersion(stream, className, 0) < 0) {
        return;
    }
    std::uint32_t count = 0;
    stream->read(count);
    if (!stream->canHold(count, bytesOfPoint)) {
        return;
    }
    _points.resize(count);
    for (TQPoint& point : _points) {
        point.unarchiveFrom(stream);
    }
}
