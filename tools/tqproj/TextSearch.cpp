#include "tools/tqproj/TextSearch.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <sstream>
#include <utility>

namespace {

std::string lowered(std::string_view text) {
    std::string low(text);
    for (char& c : low) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return low;
}

/// The fewest bytes to insert, remove or exchange to make one text of another (V. I. Levenshtein, 1966).
std::size_t editDistance(std::string_view one, std::string_view other) {
    std::vector<std::size_t> row(other.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= one.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i);
        for (std::size_t j = 1; j <= other.size(); ++j) {
            const std::size_t exchanged = diagonal + (one[i - 1] == other[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({exchanged, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row.back();
}

} // namespace

bool isSameText(std::string_view one, std::string_view other) { return lowered(one) == lowered(other); }

bool holdsAllWords(std::string_view text, std::string_view words) {
    const std::string lowText = lowered(text);
    std::istringstream stream(lowered(words));
    for (std::string word; stream >> word;) {
        if (lowText.find(word) == std::string::npos) {
            return false;
        }
    }
    return true;
}

std::vector<std::string> nearMisses(std::string_view text, const std::vector<std::string>& names) {
    constexpr std::size_t most = 3;
    constexpr std::size_t longestText = 200; // of longer ones nobody has mistyped a letter
    const std::string low = lowered(text.substr(0, longestText));
    const std::size_t tolerance = std::max<std::size_t>(low.size() / 4, 1);
    constexpr std::size_t fewLetters = 3; // which are in too many names
    const bool isTelling = low.size() > fewLetters;
    std::vector<std::pair<std::size_t, std::string>> ranked;
    for (const std::string& name : names) {
        const std::string lowName = lowered(name);
        const std::size_t distance = editDistance(low, lowName);
        const bool isBeginning = low.size() > 1 && lowName.starts_with(low);
        if (distance <= tolerance || isBeginning || (isTelling && holdsAllWords(name, low))) {
            ranked.emplace_back(distance, name);
        }
    }
    std::ranges::sort(ranked);
    std::vector<std::string> nearest;
    for (std::size_t index = 0; index < std::min(most, ranked.size()); ++index) {
        nearest.push_back(std::move(ranked[index].second));
    }
    return nearest;
}

std::string nearNamesText(const std::string& name, const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& near : nearMisses(name, names)) {
        text += (text.empty() ? "; near names: " : ", ") + near;
    }
    return text;
}
