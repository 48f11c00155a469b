#include "support/TQFile.h"

#include "support/TQNumberText.h"
#include "support/TQPlatform.h"
#include "support/TQRawLine.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <optional>
#include <system_error>

namespace {

#ifdef _WIN32
constexpr std::string_view lineEnd = "\r\n";
#else
constexpr std::string_view lineEnd = "\n";
#endif
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view fileHeader = "TQFile v";
constexpr int tableBucketCount = 111;

std::size_t sizeOf(int count) { return count > 0 ? static_cast<std::size_t>(count) : 0; }

/// Makes sure that what is written stays on its line.
std::string onOneLine(std::string bytes) {
    for (char& byte : bytes) {
        if (byte == '\0' || byte == '\r' || byte == '\n') {
            byte = ' ';
        }
    }
    return bytes;
}

/// The version number that is all of a text but for blanks at its end.
std::optional<int> versionFrom(std::string_view text) {
    text = text.substr(0, text.find_last_not_of(" \t") + 1);
    int version = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), version);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return version;
}

std::optional<std::string_view> columnOf(std::string_view line, int column) {
    if (column < 0) {
        return std::nullopt;
    }
    for (; column > 0; --column) {
        const std::size_t tab = line.find('\t');
        if (tab == std::string_view::npos) {
            return std::nullopt;
        }
        line.remove_prefix(tab + 1);
    }
    return line.substr(0, line.find('\t'));
}

void addRow(TQStrHashTbl& table, std::string_view line, int keyColumn, int valueColumn) {
    const std::optional<std::string_view> key = columnOf(line, keyColumn);
    const std::optional<std::string_view> value = columnOf(line, valueColumn);
    if (!key || !value) {
        return;
    }

    const TQString keyText(*key, TQEncodingUTF8);
    if (table.isKey(keyText)) {
        return;
    }
    auto valueText = std::make_unique<TQString>(*value, TQEncodingUTF8);
    table.add(valueText.get(), keyText);
    static_cast<void>(valueText.release()); // the table's user owns it from here on
}

/// Why a stream gave no further line; no error at its end.
std::error_code reasonOfNoLine(std::FILE* stream) {
    if (std::ferror(stream) != 0) {
        return tq_lastError();
    }
    return std::feof(stream) != 0 ? std::error_code() : std::make_error_code(std::errc::file_too_large);
}

/// How many numbers a text is; nothing when it holds anything else.
std::optional<int> numbersIn(const std::string& text) {
    constexpr std::string_view blanks = " \t\v\f";
    int count = 0;
    double value = 0;
    std::size_t end = 0;
    for (std::size_t start = 0; (start = text.find_first_not_of(blanks, end)) != std::string::npos; ++count) {
        end = std::min(text.find_first_of(blanks, start), text.size());
        if (!tq_parseCompleteDouble(std::string_view(text).substr(start, end - start), value)) {
            return std::nullopt;
        }
    }
    return count;
}

} // namespace

TQFile::TQFile() : _exceptionsAtConstruction(std::uncaught_exceptions()) {}

TQFile::TQFile(const TQString& path, _tqencodingtype encoding)
    : _path(path), _encoding(encoding), _exceptionsAtConstruction(std::uncaught_exceptions()) {}

TQFile::~TQFile() {
    if (std::uncaught_exceptions() > _exceptionsAtConstruction) {
        abandon();
    } else {
        close();
    }
}

int TQFile::open(int mode) {
    if (mode != Read && mode != Write) {
        return outcome(std::make_error_code(std::errc::invalid_argument));
    }
    if (isOpen()) {
        const bool isInThisMode = _output.isOpen() == (mode == Write);
        return outcome(isInThisMode ? std::error_code()
                                    : std::make_error_code(std::errc::operation_not_permitted));
    }
    return mode == Write ? openForWriting() : openForReading();
}

int TQFile::openForReading() {
    _input.reset(tq_fopen(_path, "rb"));
    _isAtStart = true;
    _lineNumber = 0;
    _firstMalformedLine = 0;
    _firstCutLine = 0;
    _problem.clear();
    return outcome(_input != nullptr ? std::error_code() : tq_lastError());
}

int TQFile::openForWriting() {
    _output.open(_path);
    return outcome(_output.error());
}

int TQFile::close() {
    _input.reset();
    if (!_output.isOpen()) {
        return 0;
    }
    _output.commit();
    return outcome(_output.error());
}

void TQFile::abandon() {
    _input.reset();
    _output.abandon();
}

/// Remembers why a call failed, or that it did not, and is its answer.
int TQFile::outcome(const std::error_code& error) {
    _error = error;
    return error ? 1 : 0;
}

int TQFile::readLine(TQString& line, int maximum, bool stripLineEnd, _tqencodingtype encoding) {
    if (_input == nullptr) {
        return outcome(std::make_error_code(std::errc::bad_file_descriptor));
    }
    const std::size_t markLength = _isAtStart ? 1 : 0;
    std::optional<TQRawLine> raw = tq_nextRawLine(_input.get(), sizeOf(maximum) + markLength);
    _error = raw ? std::error_code() : reasonOfNoLine(_input.get());
    if (!raw) {
        return 1;
    }
    ++_lineNumber;

    if (_isAtStart && raw->bytes.starts_with(byteOrderMark)) {
        raw->bytes.erase(0, byteOrderMark.size());
    }
    _isAtStart = false;

    TQString text(raw->bytes.c_str());
    if (_firstCutLine == 0 && (raw->isCut || text.length() > maximum)) {
        _firstCutLine = _lineNumber;
    }
    text.cutAtIndex(maximum);
    if (encoding == TQEncodingDefault) {
        text.convertToEncoding(TQEncodingDefault);
    }
    if (raw->hasEnd && !stripLineEnd) {
        text.append(U'\n');
    }
    line = text;
    return 0;
}

int TQFile::readNumberLine(TQString& line, std::initializer_list<int> counts, int maximum) {
    if (readLine(line, maximum) != 0) {
        return 1;
    }
    const std::optional<int> found = numbersIn(line.utf8());
    const bool isMeant = found && std::ranges::find(counts, *found) != counts.end();
    if (_firstMalformedLine == 0 && !isMeant) {
        _firstMalformedLine = _lineNumber;
    }
    return 0;
}

int TQFile::failReading(int code, const std::string& problem) {
    if (_problem.empty()) {
        _problem = problem;
    }
    return code;
}

std::string TQFile::numberText(double value, const char* format) const {
    return tq_format(_writesNumbersExactly ? "%.17g" : format, value);
}

std::string TQFile::encoded(const TQString& text) const {
    TQString inDefaultEncoding(text);
    const bool isDefaultPossible =
        _encoding == TQEncodingDefault && inDefaultEncoding.convertToEncoding(TQEncodingDefault);
    if (isDefaultPossible && TQString(inDefaultEncoding.charBuffer()) == text) {
        return inDefaultEncoding.charBuffer();
    }
    return text.utf8();
}

int TQFile::write(const TQString& text, std::string_view end) {
    std::string bytes = onOneLine(encoded(text));
    bytes += end;
    if (!_output.isOpen()) {
        return outcome(std::make_error_code(std::errc::bad_file_descriptor));
    }
    _output.write(bytes);
    return outcome(_output.error());
}

int TQFile::writeLine(const TQString& line) { return write(line, lineEnd); }

int TQFile::writeText(const TQString& text) { return write(text, {}); }

int TQFile::writeFileVersion() {
    const std::string header = std::string(fileHeader) + std::to_string(_fileVersion);
    return writeLine(TQString(header.c_str()));
}

int TQFile::readFileVersion() {
    TQString line;
    if (readLine(line) != 0) {
        return 1;
    }
    const std::string header = line.utf8();
    if (!header.starts_with(fileHeader)) {
        return 1;
    }
    const std::optional<int> version = versionFrom(std::string_view(header).substr(fileHeader.size()));
    if (!version) {
        return 1;
    }
    _fileVersion = *version;
    return 0;
}

int TQFile::writeBlockVersion() { return writeLine(TQString(std::to_string(_blockVersion).c_str())); }

int TQFile::readBlockVersion() {
    TQString line;
    if (readLine(line) != 0) {
        return 1;
    }
    const std::string header = line.utf8();
    const std::size_t mark = header.rfind('v');
    if (mark == std::string::npos) {
        return 1;
    }
    const std::optional<int> version = versionFrom(std::string_view(header).substr(mark + 1));
    if (!version) {
        return 1;
    }
    _blockVersion = *version;
    return 0;
}

std::unique_ptr<TQStrHashTbl> TQFile::newStringTableFromContents(int keyColumn, int valueColumn, bool& ok) {
    ok = false;
    const bool isOpener = !isOpen();
    if (open(Read) != 0) {
        return nullptr;
    }

    auto table = std::make_unique<TQStrHashTbl>(tableBucketCount);
    for (TQString line; readLine(line) == 0;) {
        addRow(*table, line.utf8(), keyColumn, valueColumn);
    }
    ok = std::ferror(_input.get()) == 0;
    if (isOpener) {
        close();
    }
    if (ok) {
        return table;
    }

    table->deleteAllValuesAsTQString();
    return nullptr;
}
