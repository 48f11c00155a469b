#pragma once

#include "TQSystemWExport.h"

class TQFile;

/// The head of one block of a text definition file: the header text "<class name> v" with the block
/// version, and the codes that a class answers for what can go wrong with it.
struct TQSYSTEMW_EXPORT TQTextBlock {
    const char* className; ///< the class that the block belongs to
    int oldestVersion;     ///< the oldest version that is read
    int newestVersion;     ///< the newest version that is read, and the one that is written
    int openFailed;        ///< code: the file cannot be opened
    int headerUnreadable;  ///< code: no block version found
    int versionUnknown;    ///< code: a version outside the range, reported as "<class name>::loadFromFile:
                           ///< Unknown version"
    int writeFailed;       ///< code: the header cannot be written
    bool everyVersionIsRead = false; ///< whether a version outside the range is taken as well

    /// Opens the file for reading unless it is open, and reads the block version. Without the header the
    /// version is the one that the file holds already.
    /// @param file the file to read
    /// @param withHeader whether the header line stands in the file
    /// @param version receives the block version; a reader keeps it here, as nested blocks change the file's
    /// @return 0 or one of the codes, with the reason in TQFile::problem()
    int beginReading(TQFile& file, bool withHeader, int& version) const;

    /// Opens the file for writing unless it is open, and writes the header line with the newest version.
    /// @param file the file to write
    /// @param withHeader whether to write the header line
    /// @return 0 or one of the codes
    int beginWriting(TQFile& file, bool withHeader) const;
};
