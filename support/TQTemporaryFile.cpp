#include "support/TQTemporaryFile.h"

#include "support/TQPlatform.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <exception>
#include <random>
#include <string>
#include <utility>

namespace {

namespace fs = std::filesystem;

using Character = fs::path::value_type;

/// What becomes of a slot: its owner claims and names it, and frees it in the end, unless a signal handler
/// was faster.
enum SlotState : int { Free, Claimed, Named, Removed };

static_assert(std::atomic<int>::is_always_lock_free, "a signal handler may wait for nobody");

std::uint32_t randomNumber() {
    try {
        return std::random_device()();
    } catch (const std::exception&) { // the system has no source of random numbers
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        return static_cast<std::uint32_t>(now);
    }
}

fs::path freshName() {
    return "tqfile-" + std::to_string(tq_processId()) + "-" + std::to_string(randomNumber()) + ".tmp";
}

} // namespace

/// A name that a signal handler can read. The table is static and never destroyed.
struct TQTemporaryFile::Slot {
    static constexpr std::size_t longestName = 4096; // with the zero at its end

    bool claim(const fs::path& path) {
        int expected = Free;
        if (path.native().size() >= longestName || !state.compare_exchange_strong(expected, Claimed)) {
            return false;
        }
        *std::ranges::copy(path.native(), name.begin()).out = Character(0);
        state = Named;
        return true;
    }

    void free() {
        int expected = Named;
        state.compare_exchange_strong(expected, Free);
    }

    void removeFile() noexcept {
        int expected = Named;
        if (state.compare_exchange_strong(expected, Removed)) {
            tq_removeFile(name.data());
        }
    }

    static std::array<Slot, mostKnown> table;

    std::atomic<int> state = Free;
    std::array<Character, longestName> name{};
};

constinit std::array<TQTemporaryFile::Slot, TQTemporaryFile::mostKnown> TQTemporaryFile::Slot::table{};

TQTemporaryFile::Slot* TQTemporaryFile::claimSlot(const fs::path& path) {
    const auto slot = std::ranges::find_if(Slot::table, [&](Slot& each) { return each.claim(path); });
    return slot != Slot::table.end() ? &*slot : nullptr;
}

TQTemporaryFile::TQTemporaryFile(fs::path path) : _path(std::move(path)), _slot(claimSlot(_path)) {}

std::unique_ptr<TQTemporaryFile> TQTemporaryFile::create(const fs::path& directory, TQStreamHandle& stream,
                                                         std::error_code& error) {
    constexpr int mostAttempts = 100;
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        // The name is known before the file is there, so that no signal finds a file that is not.
        std::unique_ptr<TQTemporaryFile> file(new TQTemporaryFile(directory / freshName()));
        stream.reset(tq_openStream(file->_path, "wbx"));
        error = stream != nullptr ? std::error_code() : tq_lastError();
        if (stream != nullptr) {
            file->_isThere = true;
            return file;
        }
        if (error != std::errc::file_exists) {
            return nullptr;
        }
    }
    return nullptr;
}

TQTemporaryFile::~TQTemporaryFile() {
    if (_isThere) {
        std::error_code error;
        fs::remove(_path, error);
    }
    release();
}

std::error_code TQTemporaryFile::moveTo(const fs::path& target) {
    std::error_code error;
    fs::rename(_path, target, error);
    if (!error) {
        _isThere = false;
        release();
        tq_synchronizeDirectory(target.parent_path());
    }
    return error;
}

void TQTemporaryFile::removeAll() noexcept {
    for (Slot& slot : Slot::table) {
        slot.removeFile();
    }
}

void TQTemporaryFile::release() {
    if (Slot* const slot = std::exchange(_slot, nullptr)) {
        slot->free();
    }
}
