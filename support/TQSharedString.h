#pragma once

#include "TQSystemWExport.h"
#include "support/TQString.h"

#include <memory>

/// A text that exists once in the process, with a count of its uses.
///
/// Texts that are equal, in whatever encodings, share one instance. The instances belong to a
/// process-wide registry; whoever got one from getUnique() holds a use of it and gives it back with
/// unuse(). The registry may be called from several threads.
class TQSYSTEMW_EXPORT TQSharedString {
  public:
    /// The one instance with a text, made when there is none yet; counts a use.
    /// @param text the text
    static TQSharedString* getUnique(const TQString& text);

    /// Counts another use of an instance that the caller knows to be in use.
    void use();

    /// Gives a use back.
    /// @return whether it was the last one; the instance is destroyed then
    bool unuse();

    /// The number of uses that are held.
    int uses() const;

    /// The text.
    const TQString& string() const { return _string; }

    TQSharedString(const TQSharedString&) = delete;
    TQSharedString& operator=(const TQSharedString&) = delete;

  private:
    explicit TQSharedString(const TQString& text) : _string(text) {}

    const TQString _string;
    int _uses = 1;
};

/// One use of a shared string, held for as long as the object lives; copies count uses of their own.
class TQSYSTEMW_EXPORT TQSharedStringUse {
  public:
    /// Counts a use of its own.
    /// @param string the shared string, in use by the caller, or null for none
    explicit TQSharedStringUse(TQSharedString* string = nullptr);

    /// Counts a use of the shared string with a text.
    /// @param text the text
    explicit TQSharedStringUse(const TQString& text) : _string(TQSharedString::getUnique(text)) {}

    /// Counts a use of the same string.
    /// @param other the use to copy
    TQSharedStringUse(const TQSharedStringUse& other) : TQSharedStringUse(other._string) {}

    /// Takes a use over.
    /// @param other the use to take, which holds none afterwards
    TQSharedStringUse(TQSharedStringUse&& other) noexcept;

    /// Takes a use of the other's string, then gives the old one back.
    /// @param other the use to take or copy
    TQSharedStringUse& operator=(TQSharedStringUse other) noexcept;

    ~TQSharedStringUse();

    /// Whether both use the same string.
    /// @param other the use to compare with
    bool operator==(const TQSharedStringUse& other) const = default;

    /// The shared string, which this object keeps in use, or null.
    TQSharedString* string() const { return _string; }

  private:
    TQSharedString* _string; // the registry owns it; one of its uses is ours
};
