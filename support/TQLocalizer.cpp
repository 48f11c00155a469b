#include "support/TQLocalizer.h"

#include "support/TQEverlasting.h"
#include "support/TQFile.h"
#include "support/TQMessages.h"
#include "support/TQPlatform.h"
#include "support/TQResPathMgr.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace {

constexpr int longestLine = 65536; // in characters
constexpr const char* fallbackLanguage = "en";
constexpr const char* textsOfThisLayer = "units";

// ---- Lines of a file of texts

struct Entry {
    std::string key;
    std::string text;
};

void skipBlanks(std::string_view& rest) {
    rest.remove_prefix(std::min(rest.find_first_not_of(" \t"), rest.size()));
}

bool skip(std::string_view& rest, char character) {
    skipBlanks(rest);
    if (!rest.starts_with(character)) {
        return false;
    }
    rest.remove_prefix(1);
    return true;
}

bool isNothingLeft(std::string_view rest) {
    skipBlanks(rest);
    return rest.empty() || rest.starts_with("//");
}

/// The character that an escape stands for; 0 for an unknown one.
char unescaped(char character) {
    switch (character) {
    case '"':
    case '\\':
        return character;
    case 'n':
        return '\n';
    case 't':
        return '\t';
    default:
        return '\0';
    }
}

std::optional<std::string> quotedText(std::string_view& rest) {
    if (!skip(rest, '"')) {
        return std::nullopt;
    }
    std::string text;
    for (std::size_t index = 0; index < rest.size(); ++index) {
        char character = rest[index];
        if (character == '"') {
            rest.remove_prefix(index + 1);
            return text;
        }
        if (character == '\\') {
            ++index;
            character = index < rest.size() ? unescaped(rest[index]) : '\0';
            if (character == '\0') {
                return std::nullopt;
            }
        }
        text += character;
    }
    return std::nullopt;
}

/// The entry on a line; nothing when it is malformed.
std::optional<Entry> entryOn(std::string_view line) {
    const std::optional<std::string> key = quotedText(line);
    if (!key || !skip(line, '=')) {
        return std::nullopt;
    }
    const std::optional<std::string> text = quotedText(line);
    if (!text || !skip(line, ';') || !isNothingLeft(line)) {
        return std::nullopt;
    }
    return Entry{*key, *text};
}

void readTexts(TQFile& file, std::unordered_map<std::string, TQString>& texts) {
    TQString line;
    for (int number = 1; file.readLine(line, longestLine) == 0; ++number) {
        const std::string utf8 = line.utf8();
        if (isNothingLeft(utf8)) {
            continue;
        }
        if (std::optional<Entry> entry = entryOn(utf8)) {
            texts.insert_or_assign(std::move(entry->key), TQString(entry->text.c_str()));
        } else {
            tq_perrorf("%s:%d: malformed line skipped\n", file.path(), number);
        }
    }
}

// ---- Languages

bool isLanguageCode(const std::string& code) {
    return !code.empty() && std::all_of(code.begin(), code.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    });
}

/// The languages to look in for a text: "de_CH" gives "de_CH", "de", "en".
std::vector<std::string> languagesFor(std::string code) {
    std::replace(code.begin(), code.end(), '-', '_');
    if (!isLanguageCode(code)) {
        code = fallbackLanguage;
    }

    std::vector<std::string> codes;
    for (;;) {
        codes.push_back(code);
        const std::size_t region = code.rfind('_');
        if (region == std::string::npos || region == 0) {
            break;
        }
        code.resize(region);
    }
    if (codes.back() != fallbackLanguage) {
        codes.emplace_back(fallbackLanguage);
    }
    return codes;
}

} // namespace

TQLocalizer::TQLocalizer() { resetLanguage(); }

TQLocalizer* TQLocalizer::appShared() {
    static TQEverlasting<TQLocalizer> localizer([] {
        TQLocalizer withTexts;
        withTexts.addStringsFromFile(textsOfThisLayer);
        return withTexts;
    }());
    return &*localizer;
}

bool TQLocalizer::addStringsFromFile(const TQString& name) {
    if (std::find(_files.begin(), _files.end(), name) == _files.end()) {
        _files.push_back(name);
    }
    return readFile(name);
}

bool TQLocalizer::readFile(const TQString& name) {
    bool isFound = false;
    for (Language& language : _languages) {
        const TQString directory = tq_createPath("localization", language.code);
        TQString path;
        if (!TQResPathMgr::appShared()->pathForResource(tq_createFilePath(directory, name, "strings"),
                                                        path)) {
            continue;
        }
        TQFile file(path);
        if (file.open(TQFile::Read) != 0) {
            continue;
        }
        readTexts(file, language.texts);
        isFound = true;
    }
    return isFound;
}

TQString TQLocalizer::stringForKey(const TQString& key) const {
    const std::string utf8 = key.utf8();
    for (const Language& language : _languages) {
        const auto text = language.texts.find(utf8);
        if (text != language.texts.end()) {
            return text->second;
        }
    }
    return key;
}

TQString TQLocalizer::appLocalizedStringForKey(const TQString& key) { return appShared()->stringForKey(key); }

std::u16string TQLocalizer::appLocalizedUnicodeStringForKey(const TQString& key) {
    return appLocalizedStringForKey(key).wideBuffer();
}

void TQLocalizer::setLanguage(const TQString& language) {
    _languages.clear();
    for (const std::string& code : languagesFor(language.utf8())) {
        _languages.push_back({TQString(code.c_str()), {}});
    }
    for (const TQString& name : _files) {
        readFile(name);
    }
}

void TQLocalizer::resetLanguage() { setLanguage(TQString(tq_systemLanguage().c_str())); }

void resetSystemLocalization() { TQLocalizer::appShared()->resetLanguage(); }
