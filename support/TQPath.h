#pragma once

#include "TQSystemWExport.h"

#include "support/TQString.h"

#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>

/// Joins two components with "/"; an empty component adds nothing, a separator that is already there, on
/// either side, is not doubled.
/// @param directory the first component, usually a directory
/// @param name the second component, usually a name in that directory
TQSYSTEMW_EXPORT TQString tq_createPath(const TQString& directory, const TQString& name);

/// Joins three components as the form with two does; the third is a path component, not an extension.
/// @param directory the first component
/// @param subdirectory the second component
/// @param name the third component
TQSYSTEMW_EXPORT TQString tq_createPath(const TQString& directory, const TQString& subdirectory,
                                        const TQString& name);

/// The path of a file from its directory, its name without extension, and its extension.
/// @param directory the directory
/// @param name the file's name, such as correctFileNameUnique() leaves it
/// @param extension the extension without its dot; empty for none
TQSYSTEMW_EXPORT TQString tq_createFilePath(const TQString& directory, const TQString& name,
                                            const TQString& extension);

/// The directory part of a path, without a trailing separator; "." when the path has none.
/// @param path the path
TQSYSTEMW_EXPORT TQString tq_pathDirPart(const TQString& path);

/// The extension of a path's last component: what follows its last dot, without that dot. Empty when
/// there is no dot but a leading one.
/// @param path the path
TQSYSTEMW_EXPORT TQString tq_pathExtension(const TQString& path);

/// Whether two paths lead to the same file or directory. Existing ones are compared by what they lead to,
/// others by their normal form.
/// @param first one path
/// @param second the other path
TQSYSTEMW_EXPORT bool tq_pathIsEqual(const TQString& first, const TQString& second);

/// Creates a directory and what is missing above it; 0 when it is there afterwards, else 1.
/// @param path the directory
TQSYSTEMW_EXPORT int tq_mkdir(const TQString& path);

/// Changes a name in place into a file name that does not exist yet in a directory and is legal on every
/// platform.
///
/// Characters reserved somewhere (angle brackets, colon, quotation mark, slash, backslash, bar, question
/// mark, asterisk), control characters and those that stand for bytes of a path become "_"; blanks at either
/// end and dots at the end go, a leading dot becomes "_"; a Windows device name (CON, NUL, COM1 ...) gets a
/// leading "_"; a name of which nothing is left becomes "unnamed"; file name and extension together keep
/// within 240 bytes of UTF-8. When the directory has an entry of that name in any capitalization, "_1",
/// "_2" ... is appended: there are file systems that do not tell capitals apart.
/// @param directory the directory that will hold the file; it need not exist yet
/// @param name the name without extension, changed in place
/// @param extension the extension that the file will have, without its dot; empty for none
TQSYSTEMW_EXPORT void correctFileNameUnique(const TQString& directory, TQString& name,
                                            const TQString& extension);

/// Finds names for many files of a directory, as correctFileNameUnique() does for one.
class TQSYSTEMW_EXPORT TQUniqueFileNames {
  public:
    /// Lists the names that the directory has.
    /// @param directory the directory that will hold the files; it need not exist yet
    explicit TQUniqueFileNames(const TQString& directory);

    /// A name that neither the directory has nor this object has given.
    /// @param name the name that is wished for
    /// @param extension the extension that the file will have, without its dot; empty for none
    /// @return the name, without extension
    TQString take(const TQString& name, const TQString& extension);

  private:
    std::set<std::string> _taken;            // without capitals
    std::map<std::string, int> _nextNumbers; // by the first name for a wish: the number to begin at
};

/// Opens a C stream; null when that fails, and always for a directory: errno tells why. The caller closes the
/// stream with tq_fclose().
/// @param path the file
/// @param mode the mode as for std::fopen()
TQSYSTEMW_EXPORT std::FILE* tq_fopen(const TQString& path, const char* mode);

/// Closes a C stream; 0 when everything written has reached the system, else 1. Null is closed already.
/// @param stream the stream, or null
TQSYSTEMW_EXPORT int tq_fclose(std::FILE* stream);

/// Closes a C stream that a TQStreamHandle owns.
struct TQStreamCloser {
    /// Closes the stream.
    /// @param stream the stream, not null
    void operator()(std::FILE* stream) const { tq_fclose(stream); }
};

/// An owned C stream.
using TQStreamHandle = std::unique_ptr<std::FILE, TQStreamCloser>;

/// A path text as the standard library's path; empty for a text that no path can hold (one with a NUL). The
/// text that tq_stringFromPath() gave leads to the same bytes again, whatever they are.
/// @param path the path
TQSYSTEMW_EXPORT std::filesystem::path tq_filesystemPath(const TQString& path);

/// A path of the standard library as text, components separated by "/". Bytes that are no UTF-8 are kept as
/// pairs of noncharacters (tq_textFromPathBytes()); empty on Windows for a path that is not valid UTF-16.
/// @param path the path
TQSYSTEMW_EXPORT TQString tq_stringFromPath(const std::filesystem::path& path);
