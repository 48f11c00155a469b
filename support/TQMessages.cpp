#include "support/TQMessages.h"

#include "support/TQEverlasting.h"
#include "support/TQHandlerSlot.h"

#include <cstdio>
#include <string>
#include <utility>

namespace {

TQHandlerSlot<TQErrorPrinter>& printerSlot() {
    static TQEverlasting<TQHandlerSlot<TQErrorPrinter>> slot;
    return *slot;
}

/// One write for the whole line, so that lines of several threads do not mix.
void printToStandardError(std::string_view utf8) {
    std::string line(utf8);
    if (!line.ends_with('\n')) {
        line += '\n';
    }
    std::fwrite(line.data(), 1, line.size(), stderr);
}

} // namespace

TQErrorPrinter tq_setErrorPrinter(TQErrorPrinter printer) {
    return printerSlot().exchange(std::move(printer));
}

void tq_printError(std::string_view utf8) {
    if (const TQErrorPrinter printer = printerSlot().current()) {
        printer(utf8);
    } else {
        printToStandardError(utf8);
    }
}

void tq_perror(std::string_view utf8) {
    if (TQMessageScope::lets(utf8)) {
        tq_printError(utf8);
    }
}

void tq_perror(const char* text) {
    if (text != nullptr) {
        tq_perror(TQString(text));
    }
}

void tq_perror(const TQString& text) { tq_perror(std::string_view(text.utf8())); }

void tq_wperror(const char16_t* text) {
    if (text != nullptr) {
        tq_perror(TQString(text));
    }
}
