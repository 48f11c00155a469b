#pragma once

#include "TQProjectionExport.h"

#include <memory>

struct PJconsts; // PROJ's PJ
struct pj_ctx;   // PROJ's PJ_CONTEXT

/// Releases objects of PROJ.
struct TQPROJECTION_EXPORT TQProjRelease {
    /// Destroys a context.
    void operator()(pj_ctx* context) const;
    /// Destroys a reference system or an operation.
    void operator()(PJconsts* object) const;
};

/// A context of PROJ and its owner.
using TQProjContextHandle = std::unique_ptr<pj_ctx, TQProjRelease>;
/// A reference system or an operation of PROJ and its owner; released before its context.
using TQProjHandle = std::unique_ptr<PJconsts, TQProjRelease>;
