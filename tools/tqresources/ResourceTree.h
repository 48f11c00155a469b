#pragma once

#include "ellipsoid/TQEllMgr.h"
#include "tools/tqresources/CodeList.h"
#include "tools/tqresources/EpsgDataSet.h"
#include "tools/tqresources/NativeForm.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

/// Writes the resource tree: the ellipsoids, datums and projections of the lists, and the areas of use of the
/// projections, from the EPSG data set.
class ResourceTree {
  public:
    /// A tree in a directory, which is made; other files in it stay.
    /// @param directory where it is written
    /// @param lists where the lists are
    ResourceTree(std::filesystem::path directory, std::filesystem::path lists);

    /// Writes all files. What cannot be expressed is reported to the error output and left out.
    /// @return whether everything was written
    bool write();

  private:
    /// A datum that was written.
    struct Datum {
        std::string epsgName;
        std::string ellipsoidCode;
    };

    std::string versionOfLists() const;
    void writeEllipsoid(const CodeLine& line);
    void writeDatum(const CodeLine& line);
    void writeProjection(const CodeLine& line);
    void addArea(const CodeLine& line);
    void writeAreas() const;
    void writeEach(const char* list, void (ResourceTree::*writeOne)(const CodeLine&));
    TQEllipsoid& ellipsoidOf(const EpsgSystem& system, const std::string& datum) const;
    const std::string& ellipsoidName(const std::string& code) const;
    TQString path(const char* folder, std::string name, const char* extension) const;

    std::filesystem::path _directory;
    std::filesystem::path _lists;
    EpsgDataSet _dataSet;
    TQEllMgr _ellipsoids;
    std::map<std::string, std::string> _ellipsoidNames; // by code
    std::map<std::string, Datum> _datums;               // by name
    std::vector<std::string> _areaLines;
    bool _isComplete = true;
};
