#pragma once

#include <string>
#include <string_view>
#include <vector>

// How people look for names: capital and small letters from A to Z count the same.

/// Whether two texts are the same but for capitals.
/// @param one a text
/// @param other another text
bool isSameText(std::string_view one, std::string_view other);

/// Whether a text holds each word of another.
/// @param text the text
/// @param words words separated by blanks; none are held by every text
bool holdsAllWords(std::string_view text, std::string_view words);

/// The names that somebody may have meant, the nearest first: those that hold all words of the text, those
/// that differ from it in few letters, and those that begin with it.
/// @param text what was given, and is no name
/// @param names the names that there are
/// @return at most three of them
std::vector<std::string> nearMisses(std::string_view text, const std::vector<std::string>& names);

/// The near misses as the end of a sentence; empty when there are none.
/// @param name the name that is wanted
/// @param names the names that there are
std::string nearNamesText(const std::string& name, const std::vector<std::string>& names);
