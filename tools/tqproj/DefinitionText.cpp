#include "tools/tqproj/DefinitionText.h"

#include "proj/TQPrProj4.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/TextSearch.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <vector>

namespace {

bool isLetterOrDigit(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

/// What a text begins with, up to the first character that no name of a keyword or authority has.
std::string_view leadingWord(std::string_view text) {
    const auto* const end =
        std::ranges::find_if_not(text, [](char c) { return isLetterOrDigit(c) || c == '_'; });
    return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

std::string_view withoutLeading(std::string_view text, std::string_view blanks) {
    return text.substr(std::min(text.find_first_not_of(blanks), text.size()));
}

/// The letters and digits of a name; those beyond ASCII too.
std::string essence(std::string_view name) {
    std::string letters;
    std::ranges::copy_if(name, std::back_inserter(letters),
                         [](char c) { return isLetterOrDigit(c) || static_cast<unsigned char>(c) >= 0x80; });
    return letters;
}

} // namespace

bool looksLikeDefinition(std::string_view argument) {
    const std::string_view text = withoutLeading(argument, " \t\r\n");
    const std::string_view word = leadingWord(text);
    const std::string_view behind = text.substr(word.size());
    constexpr std::size_t driveLetter = 1; // of a path on Windows
    const bool isCode = word.size() > driveLetter && behind.starts_with(':') &&
                        text.find_first_of("/\\") == std::string_view::npos;
    const bool isWKT = !word.empty() && withoutLeading(behind, " ").starts_with('[');
    const bool isPROJString =
        text.find("proj=") != std::string_view::npos || text.find("init=") != std::string_view::npos;
    return isCode || isWKT || isPROJString || text.starts_with('{') || text.starts_with("http://") ||
           text.starts_with("https://");
}

std::string problemOfName(const TQPrProj4& system, SystemKind kind) {
    const std::string name = system.definition().utf8();
    if (looksLikeDefinition(name) || isSameText(essence(name), essence(system.systemName().utf8()))) {
        return {};
    }
    const std::vector<std::string> names = Catalogue::systemNames(kind);
    return names.empty()
               ? "PROJ has no database"
               : "no reference system is called " + printableText(name) + nearNamesText(name, names);
}
