#pragma once

#include "manager/TQProjMgr.h"
#include "tools/tqproj/DocumentFile.h"
#include "tools/tqproj/ExitCode.h"
#include "tools/tqproj/LibraryMessages.h"

#include <cstdint>
#include <string>

class Diagnostics;
class OutputBuffer;

/// What `tqproj inspect` was asked for.
struct InspectOptions {
    std::string path; ///< the document, UTF-8
};

/// `tqproj inspect`: prints the blocks of a document, a line each: where it begins, the class names and
/// versions at its head, what it holds.
class InspectCommand {
  public:
    /// @param options what to do
    /// @param output where the blocks go
    /// @param diagnostics where messages go; both must outlive this object
    InspectCommand(const InspectOptions& options, OutputBuffer& output, Diagnostics& diagnostics);

    /// Prints the blocks.
    /// @return Incomplete when only a part of the document could be read
    ExitCode run();

  private:
    bool inspectEllipsoids();
    bool inspectProjections();
    std::int32_t beginBlock(const char* className, const char* content);
    std::size_t position() const;
    void addLine(std::size_t offset, const std::string& content);

    OutputBuffer& _output;
    Diagnostics& _diagnostics;
    LibraryMessages _messages;
    DocumentFile _file;
    TQReadMemStream _stream;
    TQProjMgr _document{false};
    bool _hasBlocks = false;
};
