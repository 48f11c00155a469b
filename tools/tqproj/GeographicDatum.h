#pragma once

#include <string>

class LibraryMessages;
class TQProjection;

/// The datum that the user wants longitude and latitude on.
enum class DatumChoice {
    Usual, ///< what the projection takes by itself
    Own,   ///< that of the projection
    WGS84  ///< WGS 84, from which a shift leads to that of the projection
};

/// The datum that a projection takes longitude and latitude on, for people: "WGS 84, by a shift of three
/// parameters".
/// @param projection the projection
std::string datumText(const TQProjection& projection);

/// Puts longitude and latitude of a projection on the datum that the user wants.
/// @param projection the projection; its ellipsoid, which others may have, stays as it is
/// @param choice the datum
/// @param messages where the library's messages arrive
/// @return why the projection does not have them there, and cannot be used any more; empty when it has
std::string chooseDatum(TQProjection& projection, DatumChoice choice, LibraryMessages& messages);
