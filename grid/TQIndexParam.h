#pragma once

#include "TQProjectionExport.h"

#include "support/TQString.h"

#include <optional>

/// How the lines of a map grid are numbered in one direction.
struct TQPROJECTION_EXPORT TQIndexNumbering {
    bool isNumeric = false;             ///< numbers; else letters
    char extra = 0;                     ///< a byte of the application, kept as it is
    std::optional<TQString> startLabel; ///< the label of the first line; or none

    /// The label of a line.
    ///
    /// Numbers count on from the number that the start label begins with, read as a 32-bit integer: one
    /// beyond counts as the last one of them. Letters count A, B ... Z, AA, AB ... (bijective numeration in
    /// base 26) from the start label; of another character than a capital its code counts likewise, from 64
    /// for nothing, so that also such a label counts on. The letters' number is limited to 64 bits. No label
    /// and an empty one stand for 0, in front of "1" and "A".
    /// @param offset how many lines this one lies behind the first one; below 0 in front of it
    /// @return the label; empty for letters in front of "A"
    TQString label(int offset) const;
};

/// How the lines of a map grid are labelled at its borders.
struct TQPROJECTION_EXPORT TQIndexParam {
    bool usesAlphanumbering = false; ///< whether there are labels
    bool usesNumberingLimit = false; ///< whether labels end at a limit
    TQIndexNumbering horizontal;     ///< the labels along the horizontal borders
    TQIndexNumbering vertical;       ///< the labels along the vertical borders

    /// The label of a line along the horizontal borders, see TQIndexNumbering::label().
    /// @param offset the offset from the first line
    TQString indexString_horizontal(int offset) const { return horizontal.label(offset); }

    /// The label of a line along the vertical borders, see TQIndexNumbering::label().
    /// @param offset the offset from the first line
    TQString indexString_vertical(int offset) const { return vertical.label(offset); }
};
