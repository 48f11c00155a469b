#pragma once

#include "TQSystemWExport.h"

#include "support/TQPath.h"
#include "support/TQReplacementFile.h"
#include "support/TQStrHashTbl.h"
#include "support/TQString.h"

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

/// A text file that is read or written line by line, with a version of the whole file and versions of
/// headed blocks in it.
///
/// Text is UTF-8 without a byte-order mark (one at the start of a file is skipped); a line that is not
/// valid UTF-8 is read in the default 8-bit encoding, so that nothing is lost. Lines end in "\n", on
/// Windows in "\r\n"; both are read everywhere, and a last line without an end counts. The file version
/// stands on a line "TQFile v1", a block version behind its header text: "TQEllipsoid v2".
///
/// A file being written is written beside its target and takes its place on close(), and only when every
/// write succeeded (TQReplacementFile); each line is handed to the system at once, so that a full disk
/// shows at the line that fails.
///
/// All calls that answer an int answer 0 for success and 1 for failure; error() tells the system's reason.
class TQSYSTEMW_EXPORT TQFile {
  public:
    /// The ways to open a file.
    enum Mode : int { Read = 0, Write = 1 };

    /// The limit that readLine() sets to a line's length, in characters, unless told otherwise.
    static constexpr int defaultMaximumLength = 4096;

    /// A file without a path yet.
    TQFile();

    /// A file with its path; nothing is opened.
    /// @param path the file's path
    /// @param encoding how text is written: as UTF-8; or in the default 8-bit encoding, wherever a line so
    ///        written reads back as the same text, and as UTF-8 elsewhere
    explicit TQFile(const TQString& path, _tqencodingtype encoding = TQEncodingUTF8);

    /// Closes the file. One being written is abandoned instead while an exception unwinds the stack.
    ~TQFile();

    TQFile(const TQFile&) = delete;
    TQFile& operator=(const TQFile&) = delete;

    /// Sets the path that the next open() takes; a file that is open stays the one it is.
    /// @param path the file's path
    void setPath(const TQString& path) { _path = path; }

    /// The path set last.
    const TQString& path() const { return _path; }

    /// Opens the file. A file that is open already in the same mode stays so and keeps its position (0):
    /// a block inside a file is read and written like a whole file. In the other mode it is refused (1).
    /// A directory or an unreadable file cannot be read.
    /// @param mode Read or Write; any other fails
    int open(int mode);

    /// Whether the file is open; who finds it closed opens it and is the one to close it.
    bool isOpen() const { return _input != nullptr || _output.isOpen(); }

    /// Closes the file; a written one takes its target's place now. 1 when a write failed, or the closing
    /// itself: the old file is whole then. Closing a closed file succeeds.
    int close();

    /// Closes the file; a written one is dropped, and the old file is left whole.
    void abandon();

    /// The system's reason why the last call that opened, read, wrote or closed the file failed; no error
    /// when it did not, and at the end of a file. Its message() is a text for the user: "No space left on
    /// device". A file that cannot be written keeps its first reason.
    const std::error_code& error() const { return _error; }

    /// Reads one line; 1, and the destination untouched, at the end of the file and on failure.
    /// @param line receives the line
    /// @param maximum how many characters to keep; what the line has beyond is dropped
    /// @param stripLineEnd false keeps the line's end, as "\n"; the last line may have none
    /// @param encoding TQEncodingUTF8 leaves the line in the encoding that it was read in;
    ///        TQEncodingDefault converts it to that one when all of its characters exist there
    int readLine(TQString& line, int maximum = defaultMaximumLength, bool stripLineEnd = true,
                 _tqencodingtype encoding = TQEncodingUTF8);

    /// Reads a line that should hold numbers, separated by blanks, and nothing else. It is read whatever it
    /// holds; firstMalformedLine() remembers it if it holds something else.
    /// @param line receives the line
    /// @param counts how many numbers there may be
    /// @param maximum how many characters to keep
    /// @return 0, or 1 as readLine()
    int readNumberLine(TQString& line, std::initializer_list<int> counts = {1},
                       int maximum = defaultMaximumLength);

    /// The number of the line that was read last, counted from 1; 0 before the first.
    int lineNumber() const { return _lineNumber; }

    /// The number of the first line in which readNumberLine() found something else than it should hold; 0
    /// when there is none.
    int firstMalformedLine() const { return _firstMalformedLine; }

    /// The number of the first line of which readLine() dropped what was beyond the limit; 0 when there is
    /// none.
    int firstCutLine() const { return _firstCutLine; }

    /// Remembers why a reader cannot go on, which its code alone does not always tell; the first reason since
    /// the file was opened counts.
    /// @param code the reader's code
    /// @param problem the end of a sentence, in English
    /// @return the code
    int failReading(int code, const std::string& problem);

    /// Why a reader could not go on; empty when all went well.
    const std::string& problem() const { return _problem; }

    /// Whether numberText() gives all digits that a number has, not those of the customary format.
    /// @param exact whether it does
    void setWritesNumbersExactly(bool exact) { _writesNumbersExactly = exact; }

    /// A number as writers of this file put it on their lines: in their format, or with 17 significant
    /// digits, from which every double is read back as it was.
    /// @param value the number
    /// @param format the printf-style format that the writer has for it
    std::string numberText(double value, const char* format) const;

    /// Writes one line with its end. NUL, carriage returns and line feeds in it are written as blanks, so
    /// that no name can break the file's lines.
    /// @param line the line
    int writeLine(const TQString& line);

    /// Writes text as writeLine() does, but without a line end.
    /// @param text the text
    int writeText(const TQString& text);

    /// Sets the version that writeFileVersion() writes.
    /// @param version the version of the whole file
    void setFileVersion(int version) { _fileVersion = version; }

    /// Writes the line with the file version.
    int writeFileVersion();

    /// Reads the line with the file version; on failure fileVersion() stays as it was.
    int readFileVersion();

    /// The file version that was set or read last; 0 before.
    int fileVersion() const { return _fileVersion; }

    /// Sets the version that writeBlockVersion() writes.
    /// @param version the version of the block
    void setBlockVersion(int version) { _blockVersion = version; }

    /// Writes the block version and the line end behind the header text written before.
    int writeBlockVersion();

    /// Reads a block's header line and takes the number after its last "v"; the text before is not
    /// compared. Fails, and leaves blockVersion() as it was, when there is no such number.
    int readBlockVersion();

    /// The block version that was set or read last; 0 before. A block inside a block changes it.
    int blockVersion() const { return _blockVersion; }

    /// Reads the rest of the file (the whole of it when it is not open yet) as lines of columns separated
    /// by tabs. Of equal keys the first is kept; lines without one of the two columns are skipped.
    /// @param keyColumn the column of the keys, from 0
    /// @param valueColumn the column of the values, from 0
    /// @param ok receives whether the file could be read
    /// @return the table, its values being owned TQString pointers to be deleted with
    ///         TQStrHashTbl::deleteAllValuesAsTQString(); null when ok is false
    std::unique_ptr<TQStrHashTbl> newStringTableFromContents(int keyColumn, int valueColumn, bool& ok);

  private:
    int openForReading();
    int openForWriting();
    int outcome(const std::error_code& error);
    std::string encoded(const TQString& text) const;
    int write(const TQString& text, std::string_view lineEnd);

    TQString _path;
    _tqencodingtype _encoding = TQEncodingUTF8;
    TQStreamHandle _input;
    TQReplacementFile _output;
    std::error_code _error;
    bool _isAtStart = false; // reading: a mark may come
    int _exceptionsAtConstruction;
    int _lineNumber = 0;
    int _firstMalformedLine = 0;
    int _firstCutLine = 0;
    std::string _problem;
    bool _writesNumbersExactly = false;
    int _fileVersion = 0;
    int _blockVersion = 0;
};
