#pragma once

#include "manager/TQProjMgr.h"

#include <string>
#include <string_view>

/// The bytes of a document as an application reads them, beside the projections that they were made of.
class RereadDocument {
  public:
    /// Reads a document.
    /// @param bytes the document; may go afterwards
    explicit RereadDocument(std::string_view bytes);

    /// What an application gets otherwise under the name of a projection. Only the same numbers, to the last
    /// digit, on the same ellipsoid, to the digits that files keep of it, count as the same. Of several
    /// projections of one definition and one name, but for a number at its end, a document gives back one,
    /// which counts for all.
    /// @param original the projection
    /// @return the end of a sentence; empty when nothing differs
    std::string differenceFrom(const TQProjection& original);

  private:
    TQProjMgr _manager;
};
