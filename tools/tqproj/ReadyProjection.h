#pragma once

#include <string>

class LibraryMessages;
class TQProjection;

/// Makes a projection ready for points, and judges whether it is one: what PROJ computes is built if it was
/// only read, and must be a system whose coordinates are two, by a definition or by its whole name. Every
/// command that takes a projection asks here.
/// @param projection the projection, of any class
/// @param messages where the library's messages arrive; emptied when there is a reason
/// @return why no point can be converted; empty when points can be
std::string makeReady(const TQProjection& projection, LibraryMessages& messages);
