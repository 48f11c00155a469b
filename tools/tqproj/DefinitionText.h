#pragma once

#include "tools/tqproj/Catalogue.h"

#include <string>
#include <string_view>

class TQPrProj4;

// What people write for a reference system. Of a text that is nothing else PROJ makes a system too, the first
// one whose name holds it ("foo" is Amersfoort), so names are compared here.

/// Whether a text has the look of a definition: it holds "proj=" or "init=", it is an authority and a code
/// ("EPSG:2154") or a web address, or it begins like WKT ("PROJCRS[") or PROJJSON ("{"). PROJ takes any other
/// for a name.
/// @param text the text
bool looksLikeDefinition(std::string_view text);

/// Why a definition that is a name means no system: none is called so, but for capitals, blanks and
/// punctuation.
/// @param system the system that PROJ made of the definition
/// @param kind of which systems near names are told
/// @return the reason; empty when there is such a system, and for a definition that is no name
std::string problemOfName(const TQPrProj4& system, SystemKind kind);
