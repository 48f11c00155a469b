#include "support/TQPlatform.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cwchar>
#include <memory>

#ifdef _WIN32
#define WIN32_LEAN_AND_MEAN
#include <fcntl.h>
#include <intrin.h>
#include <io.h>
#include <windows.h>
// after windows.h
#include <shellapi.h>
#else
#include <csignal>
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace {

/// The path without links; as it is when it cannot be resolved.
std::filesystem::path resolved(const std::filesystem::path& path) {
    std::error_code error;
    const std::filesystem::path result = std::filesystem::canonical(path, error);
    return error ? path : result;
}

/// What tq_callOnTermination() was given.
std::atomic<void (*)()> terminationFunction = nullptr;

static_assert(std::atomic<void (*)()>::is_always_lock_free, "a signal handler may wait for nobody");

void callTerminationFunction() {
    if (void (*const function)() = terminationFunction.load()) {
        function();
    }
}

} // namespace

std::error_code tq_lastError() { return {errno != 0 ? errno : EIO, std::generic_category()}; }

#ifdef _WIN32

namespace {

std::string utf8FromWide(const wchar_t* text) {
    const int length = static_cast<int>(std::wcslen(text));
    if (length == 0) {
        return {};
    }
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, length, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, length, utf8.data(), size, nullptr, nullptr);
    return utf8;
}

std::wstring wideFromAscii(const char* text) { return {text, text + std::char_traits<char>::length(text)}; }

BOOL WINAPI endProcess(DWORD /*event*/) {
    callTerminationFunction();
    return FALSE; // the system's own handler ends the process
}

} // namespace

std::filesystem::path tq_libraryPath(const void* address) {
    HMODULE module = nullptr;
    const DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (address == nullptr || GetModuleHandleExW(flags, static_cast<LPCWSTR>(address), &module) == 0) {
        return {};
    }

    constexpr std::size_t longestPath = 32768; // of the system, in UTF-16 units
    std::wstring path(longestPath, L'\0');
    const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    path.resize(length);
    return resolved(path);
}

void tq_prepareStandardStreams() {
    for (std::FILE* stream : {stdin, stdout}) {
        _setmode(_fileno(stream), _O_BINARY);
    }
}

void tq_callOnTermination(void (*function)()) {
    if (terminationFunction.exchange(function) == nullptr) {
        SetConsoleCtrlHandler(&endProcess, TRUE);
    }
}

unsigned tq_holdTermination() { return 0; }

void tq_letTerminationGo(unsigned /*held*/) {}

unsigned long tq_processId() { return GetCurrentProcessId(); }

std::vector<std::string> tq_utf8Arguments(int /*argc*/, const char* const* /*argv*/) {
    int count = 0;
    const std::unique_ptr<LPWSTR, decltype(&LocalFree)> wide(CommandLineToArgvW(GetCommandLineW(), &count),
                                                             &LocalFree);
    std::vector<std::string> arguments;
    for (int index = 0; index < count; ++index) {
        arguments.push_back(utf8FromWide(wide.get()[index]));
    }
    return arguments;
}

bool tq_isTerminal(std::FILE* stream) { return stream != nullptr && _isatty(_fileno(stream)) != 0; }

std::string tq_systemLanguage() {
    wchar_t name[LOCALE_NAME_MAX_LENGTH] = {};
    const int size = GetUserDefaultLocaleName(name, LOCALE_NAME_MAX_LENGTH);
    return size > 1 ? utf8FromWide(name) : "en";
}

std::string tq_environmentText(const char* name) {
    const wchar_t* value = _wgetenv(wideFromAscii(name).c_str());
    return value != nullptr ? utf8FromWide(value) : std::string();
}

std::FILE* tq_openStream(const std::filesystem::path& path, const char* mode) {
    return _wfopen(path.c_str(), wideFromAscii(mode).c_str());
}

std::error_code tq_synchronize(std::FILE* stream) {
    const bool isDone = std::fflush(stream) == 0 && (_commit(_fileno(stream)) == 0 || errno == EBADF);
    return isDone ? std::error_code() : tq_lastError();
}

void tq_synchronizeDirectory(const std::filesystem::path& /*directory*/) {}

void tq_removeFile(const wchar_t* file) noexcept { _wunlink(file); }

#else

namespace {

/// Ends the process by the signal, whose default action the system has put back.
extern "C" void endProcess(int signal) {
    callTerminationFunction();
    raise(signal);
}

constexpr std::array<int, 3> terminationSignals{SIGINT, SIGTERM, SIGHUP};

/// Whether the device cannot do more than the system does by itself.
bool isBeyondDevice(int error) {
    return error == EINVAL || error == EROFS || error == ENOTSUP || error == ENOSYS;
}

} // namespace

std::filesystem::path tq_libraryPath(const void* address) {
    Dl_info info{};
    if (dladdr(address, &info) == 0 || info.dli_fname == nullptr) {
        return {};
    }
    return resolved(info.dli_fname);
}

void tq_prepareStandardStreams() {
    std::signal(SIGPIPE, SIG_IGN);
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(number, F_GETFD) == -1) { // opened for the other way, so that its use fails
            static_cast<void>(open("/dev/null", number == STDIN_FILENO ? O_WRONLY : O_RDONLY));
        }
    }
}

void tq_callOnTermination(void (*function)()) {
    terminationFunction = function;
    struct sigaction action {};
    action.sa_handler = &endProcess;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
    for (const int signal : terminationSignals) {
        struct sigaction before {};
        if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN) {
            sigaction(signal, &action, nullptr);
        }
    }
}

unsigned tq_holdTermination() {
    sigset_t signals;
    sigset_t before;
    sigemptyset(&signals);
    sigemptyset(&before);
    for (const int signal : terminationSignals) {
        sigaddset(&signals, signal);
    }
    if (pthread_sigmask(SIG_BLOCK, &signals, &before) != 0) {
        return 0;
    }
    unsigned held = 0;
    for (std::size_t index = 0; index < terminationSignals.size(); ++index) {
        const bool wasHeld = sigismember(&before, terminationSignals[index]) == 1;
        held |= wasHeld ? 0U : 1U << index;
    }
    return held;
}

void tq_letTerminationGo(unsigned held) {
    sigset_t signals;
    sigemptyset(&signals);
    for (std::size_t index = 0; index < terminationSignals.size(); ++index) {
        if ((held >> index & 1U) != 0) {
            sigaddset(&signals, terminationSignals[index]);
        }
    }
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
}

unsigned long tq_processId() { return static_cast<unsigned long>(getpid()); }

std::vector<std::string> tq_utf8Arguments(int argc, const char* const* argv) { return {argv, argv + argc}; }

bool tq_isTerminal(std::FILE* stream) { return stream != nullptr && isatty(fileno(stream)) != 0; }

std::string tq_systemLanguage() {
    // In the order in which POSIX lets these variables choose the language of messages.
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const std::string locale = tq_environmentText(variable);
        if (locale.empty()) {
            continue;
        }
        const std::string language = locale.substr(0, locale.find_first_of(".@"));
        return language == "C" || language == "POSIX" ? "en" : language;
    }
    return "en";
}

std::string tq_environmentText(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::FILE* tq_openStream(const std::filesystem::path& path, const char* mode) {
    // The caller owns the stream; a C stream has no type that could say so.
    return std::fopen(path.c_str(), mode); // NOLINT(cppcoreguidelines-owning-memory)
}

std::error_code tq_synchronize(std::FILE* stream) {
    const bool isDone = std::fflush(stream) == 0 && (fsync(fileno(stream)) == 0 || isBeyondDevice(errno));
    return isDone ? std::error_code() : tq_lastError();
}

void tq_synchronizeDirectory(const std::filesystem::path& directory) {
    const int descriptor = open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        fsync(descriptor);
        close(descriptor);
    }
}

void tq_removeFile(const char* file) noexcept { unlink(file); }

#endif

#if defined(__x86_64__) && defined(__GNUC__)

bool tq_processorHasAVX2() {
    return __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("fma") != 0;
}

bool tq_processorHasAVX512() {
    return tq_processorHasAVX2() && __builtin_cpu_supports("avx512f") != 0 &&
           __builtin_cpu_supports("avx512dq") != 0 && __builtin_cpu_supports("avx512cd") != 0 &&
           __builtin_cpu_supports("avx512bw") != 0 && __builtin_cpu_supports("avx512vl") != 0;
}

#elif defined(_M_X64)

namespace {

/// Whether the system keeps the registers that the bits of XCR0 stand for, and the processor has features of
/// leaf 7 (Intel, Software Developer's Manual, volume 2, CPUID).
bool hasFeatures(unsigned long long registers, unsigned features) {
    int leaf[4] = {};
    __cpuid(leaf, 1);
    constexpr int savesExtendedRegisters = 1 << 27;
    constexpr int fusedMultiplyAdd = 1 << 12;
    if ((leaf[2] & savesExtendedRegisters) == 0 || (leaf[2] & fusedMultiplyAdd) == 0 ||
        (_xgetbv(0) & registers) != registers) {
        return false;
    }
    __cpuidex(leaf, 7, 0);
    return (static_cast<unsigned>(leaf[1]) & features) == features;
}

} // namespace

bool tq_processorHasAVX2() { return hasFeatures(0x6, 1U << 5U); }

bool tq_processorHasAVX512() {
    constexpr unsigned foundation = 1U << 16U;
    constexpr unsigned others = (1U << 17U) | (1U << 28U) | (1U << 30U) | (1U << 31U); // DQ, CD, BW, VL
    return hasFeatures(0xE6, foundation | others);
}

#else

bool tq_processorHasAVX2() { return false; }

bool tq_processorHasAVX512() { return false; }

#endif
