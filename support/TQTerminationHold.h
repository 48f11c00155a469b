#pragma once

#include "TQSystemWExport.h"

/// Holds back what would end the process while the object lives, so that what it began is also ended: see
/// tq_holdTermination(). Objects may live within each other; each belongs to the thread that made it.
/// Internal: the header is not installed.
class TQSYSTEMW_EXPORT TQTerminationHold {
  public:
    TQTerminationHold();
    ~TQTerminationHold();
    TQTerminationHold(const TQTerminationHold&) = delete;
    TQTerminationHold& operator=(const TQTerminationHold&) = delete;

  private:
    unsigned _held;
};
