#pragma once

#include <chrono>
#include <cstdint>

class Diagnostics;

/// Shows how far a long conversion has come, from its second second on and a few times a second.
class Progress {
  public:
    using Clock = std::chrono::steady_clock;

    /// @param diagnostics where the status line is shown; must outlive this object
    /// @param isShown whether anything is shown at all
    /// @param totalBytes the size of all inputs, 0 when it is not known
    /// @param start when the conversion began
    Progress(Diagnostics& diagnostics, bool isShown, std::uint64_t totalBytes, Clock::time_point start);

    /// Takes the status line away.
    ~Progress();

    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Counts what was done since the last call and shows the state when it is time to.
    /// @param bytes the bytes read since then
    /// @param lines the lines converted since then
    /// @param now the present time
    void advance(std::uint64_t bytes, std::uint64_t lines, Clock::time_point now);

  private:
    void show();

    Diagnostics& _diagnostics;
    bool _isShown;
    std::uint64_t _totalBytes;
    std::uint64_t _bytes = 0;
    std::uint64_t _lines = 0;
    Clock::time_point _next;
};
