#include "tools/tqproj/map/GeographicExtent.h"

#include "support/TQNumberText.h"

#include <array>
#include <cmath>

namespace {

constexpr double fullCircle = 360.0;
constexpr double halfCircle = 180.0;
constexpr double pole = 90.0;

/// Four numbers separated by commas.
std::optional<std::array<double, 4>> fourNumbers(std::string_view text) {
    std::array<double, 4> numbers{};
    for (std::size_t index = 0; index < numbers.size(); ++index) {
        const bool isLast = index + 1 == numbers.size();
        const std::size_t end = isLast ? text.size() : text.find(',');
        if (end == std::string_view::npos || !tq_parseCompleteDouble(text.substr(0, end), numbers[index])) {
            return std::nullopt;
        }
        text.remove_prefix(isLast ? end : end + 1);
    }
    return numbers;
}

} // namespace

// What is not finite fails the comparisons. Once around the world is so exactly, whatever decimals leave of
// it.
std::optional<GeographicExtent> GeographicExtent::of(double west, double south, double east, double north) {
    constexpr double rounding = 1e-9;
    constexpr double leastSide = 1e-6; // a decimetre, in which roundings cannot be seen
    const double onceAround = west + fullCircle;
    const double eastFromWest = east > west ? east : east + fullCircle;
    const double border = std::abs(eastFromWest - onceAround) < rounding ? onceAround : eastFromWest;
    const bool isExtent = std::abs(west) <= halfCircle && border - west >= leastSide &&
                          border <= onceAround && south >= -pole && north - south >= leastSide &&
                          north <= pole;
    return isExtent ? std::optional(GeographicExtent{west, south, border, north}) : std::nullopt;
}

std::optional<GeographicExtent> GeographicExtent::fromText(std::string_view text) {
    const auto numbers = fourNumbers(text);
    if (!numbers) {
        return std::nullopt;
    }
    const auto [west, south, east, north] = *numbers;
    return of(west, south, east, north);
}

double GeographicExtent::longitudeFromWest(double longitude) const {
    const double distance = std::fmod(longitude - west, fullCircle);
    return west + (distance < 0.0 ? distance + fullCircle : distance);
}

bool GeographicExtent::contains(const TQPoint& point) const {
    constexpr double allowance = 1e-6;
    const double fromWest = longitudeFromWest(point.x) - west;
    const bool isBetween = fromWest <= width() + allowance || fromWest >= fullCircle - allowance;
    return isBetween && point.y >= south - allowance && point.y <= north + allowance;
}
