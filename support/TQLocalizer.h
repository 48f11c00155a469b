#pragma once

#include "TQSystemWExport.h"

#include "support/TQString.h"

#include <string>
#include <unordered_map>
#include <vector>

/// Texts in the user's language, found by key.
///
/// The texts stand in the files "localization/<language>/<name>.strings" of the shared directory: UTF-8
/// lines
///
///     "key" = "text";                                  // comment
///     "Say \"yes\"" = "\ta tab, a backslash \\, a line end\n";
///
/// in which the escapes shown are all there are; empty lines and lines of a comment alone are skipped. A
/// malformed line is reported as FILE:LINE through tq_perror() and skipped. A text that is missing in a
/// language ("de_CH") is taken from the language without its region ("de"), then from English ("en").
class TQSYSTEMW_EXPORT TQLocalizer {
  public:
    /// A localizer without texts, in the system's language.
    TQLocalizer();

    /// The localizer of the process, which has the texts of "units" from the beginning; never null, owned by
    /// the library.
    static TQLocalizer* appShared();

    /// Adds the texts of a file in all languages that apply; false when it exists in none of them. Keys
    /// that are known already get the new text. The file is read again whenever the language changes.
    /// @param name the file's name without directory and extension
    bool addStringsFromFile(const TQString& name);

    /// The text of a key; the key itself when there is none.
    /// @param key the key
    TQString stringForKey(const TQString& key) const;

    /// The text of a key in the localizer of the process; the key itself when there is none.
    /// @param key the key
    static TQString appLocalizedStringForKey(const TQString& key);

    /// The text of a key in the localizer of the process, as UTF-16.
    /// @param key the key
    static std::u16string appLocalizedUnicodeStringForKey(const TQString& key);

    /// Changes the language and reads all files again.
    /// @param language the code, "de" or "de_CH" (a "-" does as well); one that is no such code counts as
    ///        "en"
    void setLanguage(const TQString& language);

    /// The language that texts are looked for in.
    const TQString& language() const { return _languages.front().code; }

    /// setLanguage() with the system's language.
    void resetLanguage();

  private:
    /// The texts of one language.
    struct Language {
        TQString code;
        std::unordered_map<std::string, TQString> texts; // by the UTF-8 form of their keys
    };

    bool readFile(const TQString& name);

    std::vector<Language> _languages; // by preference, English last
    std::vector<TQString> _files;     // the names of the files added
};

/// Puts the localizer of the process back to the system's language and reads its files again.
TQSYSTEMW_EXPORT void resetSystemLocalization();
