#include "support/TQTerminationHold.h"

#include "support/TQPlatform.h"

TQTerminationHold::TQTerminationHold() : _held(tq_holdTermination()) {}

TQTerminationHold::~TQTerminationHold() { tq_letTerminationGo(_held); }
