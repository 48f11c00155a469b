#include "proj/TQProjHandles.h"

#include <proj.h>

void TQProjContextRelease::operator()(pj_ctx* context) const { proj_context_destroy(context); }

void TQProjRelease::operator()(PJconsts* object) const { proj_destroy(object); }
