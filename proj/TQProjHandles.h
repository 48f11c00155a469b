#pragma once

#include "TQProjectionExport.h"

#include <memory>
#include <utility>

struct PJconsts; // PROJ's PJ
struct pj_ctx;   // PROJ's PJ_CONTEXT

/// Releases contexts of PROJ.
class TQPROJECTION_EXPORT TQProjContextRelease {
  public:
    TQProjContextRelease() = default;

    /// For a context that calls back.
    /// @param calledBackWith what it calls back with, and keeps alive
    explicit TQProjContextRelease(std::shared_ptr<const void> calledBackWith)
        : _calledBackWith(std::move(calledBackWith)) {}

    /// Destroys a context.
    void operator()(pj_ctx* context) const;

  private:
    std::shared_ptr<const void> _calledBackWith;
};

/// Releases objects of PROJ.
struct TQPROJECTION_EXPORT TQProjRelease {
    /// Destroys a reference system or an operation.
    void operator()(PJconsts* object) const;
};

/// A context of PROJ and its owner.
using TQProjContextHandle = std::unique_ptr<pj_ctx, TQProjContextRelease>;
/// A reference system or an operation of PROJ and its owner; released before its context.
using TQProjHandle = std::unique_ptr<PJconsts, TQProjRelease>;
