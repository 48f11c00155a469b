#pragma once

#include "TQProjectionExport.h"
#include "support/TQXMLReadDocument.h"

class TQProjMgr;

/// An XML document that is read together with the manager whose projections its names mean.
class TQPROJECTION_EXPORT TQXMLReadDocument_withProjMgr : public TQXMLReadDocument {
  public:
    /// An empty document.
    /// @param projMgr the manager to resolve projection names against; stays its owner's
    explicit TQXMLReadDocument_withProjMgr(TQProjMgr* projMgr) : _projMgr(projMgr) {}

    /// The manager to resolve projection names against, owned elsewhere; may be null.
    TQProjMgr* projMgr() const { return _projMgr; }

  private:
    TQProjMgr* _projMgr;
};
