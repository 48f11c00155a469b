#pragma once

#include "proj/TQProjHandles.h"

// A definition may name files: grids, "+init=file:key", meshes. Of one that comes from a file or a document
// nobody knows what it is after, so PROJ finds for it nothing but its own data.

/// A new context, with PROJ's own means.
TQProjContextHandle tq_newOpenContext();

/// A new context through which PROJ opens only regular files in the directories that it searches for its
/// database and grids, writes none, and fetches nothing from the network, whatever the environment allows.
TQProjContextHandle tq_newConfinedContext();
