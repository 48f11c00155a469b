#pragma once

#include <functional>

// The programs of tests hand no file to the storage device: none has to outlive a failure of power, and each
// would take some milliseconds.

/// Is told instead, while it lives.
class Synchronizations {
  public:
    /// Sets who is told.
    /// @param observer receives the descriptor of each file and directory
    explicit Synchronizations(std::function<void(int descriptor)> observer);

    ~Synchronizations();

    Synchronizations(const Synchronizations&) = delete;
    Synchronizations& operator=(const Synchronizations&) = delete;
};
