#include "tools/tqproj/Progress.h"

#include "support/TQFormat.h"
#include "tools/tqproj/Diagnostics.h"

#include <algorithm>

namespace {

constexpr std::chrono::milliseconds patience{1000};
constexpr std::chrono::milliseconds interval{200};

} // namespace

Progress::Progress(Diagnostics& diagnostics, bool isShown, std::uint64_t totalBytes, Clock::time_point start)
    : _diagnostics(diagnostics), _isShown(isShown), _totalBytes(totalBytes), _next(start + patience) {}

Progress::~Progress() { _diagnostics.eraseStatus(); }

void Progress::advance(std::uint64_t bytes, std::uint64_t lines, Clock::time_point now) {
    _bytes += bytes;
    _lines += lines;
    if (_isShown && now >= _next) {
        show();
        _next = now + interval;
    }
}

void Progress::show() {
    std::string status = tq_format("tqproj: %.1f million lines", static_cast<double>(_lines) / 1e6);
    if (_totalBytes != 0) {
        const double share = static_cast<double>(_bytes) / static_cast<double>(_totalBytes);
        status += tq_format(", %d %%", static_cast<int>(100.0 * std::min(share, 1.0)));
    }
    _diagnostics.showStatus(status);
}
