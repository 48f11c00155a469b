#pragma once

#include "TQSystemWExport.h"

#include <string>
#include <string_view>

/// @file
/// Texts without the difference between capital and small letters. Internal: the header is not installed.

/// The text with every letter in the form that its capital and small forms share: simple case folding, the
/// same in every locale (Unicode Consortium, CaseFolding.txt of Unicode 14, status C and S).
/// @param utf8 the text, valid UTF-8
TQSYSTEMW_EXPORT std::string tq_caseFolded(std::string_view utf8);
