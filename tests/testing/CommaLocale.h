#pragma once

#include <clocale>
#include <cstdlib>
#include <locale>
#include <string>

/// While it lives, numbers have a decimal comma and grouped digits: in the global C++ locale always, in
/// the C locale when the machine has one of the usual ones.
class CommaLocale {
  public:
    CommaLocale() : _cLocale(std::setlocale(LC_ALL, nullptr)) {
        std::locale::global(std::locale(std::locale::classic(), new Punctuation));
#ifndef _WIN32
        setenv("LOCPATH", TQ_TEST_LOCALES, 1); // where the build has made one
#endif
        for (const char* name :
             {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "fr_FR.UTF-8", "fr_FR.utf8", "fr_FR"}) {
            if (std::setlocale(LC_ALL, name) != nullptr) {
                _hasCLocale = true;
                break;
            }
        }
#ifndef _WIN32
        unsetenv("LOCPATH");
#endif
    }

    ~CommaLocale() {
        std::locale::global(_cppLocale);
        std::setlocale(LC_ALL, _cLocale.c_str());
    }

    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;

    /// Whether the C locale has a decimal comma too.
    bool hasCLocale() const { return _hasCLocale; }

  private:
    struct Punctuation : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };

    std::locale _cppLocale;
    std::string _cLocale;
    bool _hasCLocale = false;
};
