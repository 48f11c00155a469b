#pragma once

#include "support/TQFile.h"
#include "testing/FullDisk.h"
#include "testing/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

/// A line of a text definition file, with what its reader answers when the file ends in front of it and
/// its writer when it cannot be written.
struct TextLine {
    std::string text;
    int codeWhenMissing;
    int codeWhenNotWritten;
    bool isHeader = false; ///< a header counts as missing until its version number is there
};

using TextLines = std::vector<TextLine>;

/// A header line.
inline TextLine headerLine(const std::string& text, int codeWhenUnreadable, int codeWhenNotWritten) {
    return {text, codeWhenUnreadable, codeWhenNotWritten, true};
}

/// The lines of one block after those of another.
inline TextLines operator+(TextLines first, const TextLines& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/// The file that holds the lines.
inline std::string textOf(const TextLines& lines) {
    std::string text;
    for (const TextLine& line : lines) {
        text += line.text + "\n";
    }
    return text;
}

/// What the reader must answer when only the first bytes of the file are there.
inline int codeWhenCutOff(const TextLines& lines, std::size_t length) {
    std::size_t start = 0;
    for (const TextLine& line : lines) {
        const std::size_t needed =
            line.isHeader ? line.text.size() : std::min<std::size_t>(line.text.size(), 1);
        if (length < start + needed) {
            return line.codeWhenMissing;
        }
        start += line.text.size() + 1;
    }
    return 0;
}

/// What the writer must answer when there is room for so many bytes only.
inline int codeWhenFull(const TextLines& lines, std::size_t room) {
    std::size_t end = 0;
    for (const TextLine& line : lines) {
        end += line.text.size() + 1;
        if (room < end) {
            return line.codeWhenNotWritten;
        }
    }
    return 0;
}

/// Reads the file cut off after each of its bytes and compares the answers.
/// @param lines the lines of the file
/// @param read takes a TQFile& and answers the reader's code
template <class Read>
void expectCodesWhereverTheTextEnds(const TextLines& lines, const Read& read) {
    const TemporaryDirectory directory;
    const std::string text = textOf(lines);
    for (std::size_t length = 0; length <= text.size(); ++length) {
        TQFile file(directory.fileWith("cut", text.substr(0, length)));
        EXPECT_EQ(read(file), codeWhenCutOff(lines, length)) << "of the text " << length << " bytes";
    }
}

/// Writes the file with room for fewer bytes than it has, from none to all but one, and compares the
/// answers. The file that was there before must stay as it is.
/// @param lines the lines of the file
/// @param write takes a TQFile& and answers the writer's code
template <class Write>
void expectCodesWhereverTheDiskIsFull(const TextLines& lines, const Write& write) {
    const TemporaryDirectory directory;
    const std::string text = textOf(lines);
    const TQString path = directory.fileWith("file", "what was there before");
    for (std::size_t room = 0; room < text.size(); ++room) {
        int code = 0;
        int closed = 0;
        {
            const FileSizeLimit limit(room);
            TQFile file(path);
            code = write(file);
            closed = file.close();
        }
        EXPECT_EQ(code, codeWhenFull(lines, room)) << "with room for " << room << " bytes";
        EXPECT_EQ(closed, 1) << "with room for " << room << " bytes";
        EXPECT_EQ(directory.bytesOf("file"), "what was there before") << "with room for " << room << " bytes";
    }
}
