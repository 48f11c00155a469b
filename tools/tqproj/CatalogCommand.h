#pragma once

#include "tools/tqproj/Catalogue.h"
#include "tools/tqproj/ExitCode.h"

#include <optional>
#include <string>
#include <vector>

class Diagnostics;
class OutputBuffer;

/// What `tqproj catalog` was asked for.
struct CatalogOptions {
    std::optional<std::string> family; ///< list the systems of this family only
    std::optional<std::string> search; ///< list the systems that hold all of these words
    bool isJson = false;               ///< write JSON
};

/// `tqproj catalog`: lists the families of reference systems, or systems, a line each.
class CatalogCommand {
  public:
    /// @param options what to do
    /// @param output where the list goes
    /// @param diagnostics where messages go; both must outlive this object
    CatalogCommand(CatalogOptions options, OutputBuffer& output, Diagnostics& diagnostics);

    /// Lists what was asked for.
    ExitCode run();

  private:
    bool listsFamilies() const { return !_options.family && !_options.search; }
    bool familyExists(const std::vector<CatalogueFamily>& families) const;
    bool isWanted(const CatalogueEntry& entry) const;
    ExitCode listFamilies(const std::vector<CatalogueFamily>& families);
    ExitCode listSystems();
    ExitCode refuse(const std::string& problem);

    CatalogOptions _options;
    OutputBuffer& _output;
    Diagnostics& _diagnostics;
};
