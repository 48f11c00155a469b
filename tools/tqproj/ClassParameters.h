#pragma once

#include "manager/TQProjParam.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

class TQProjection;

/// Whether a parameter belongs to the class of a projection: type, name and ellipsoid belong to every one.
/// @param name the parameter's name, UTF-8
bool isClassParameter(std::string_view name);

/// The parameters that belong to the class of a projection, in the order in which it lists them.
/// @param projection the projection
std::vector<std::unique_ptr<TQProjParam>> classParameters(const TQProjection& projection);

/// Whether a parameter is a factor of the scale: a number without a unit, or one of which a flag beside it
/// says so.
/// @param parameter the parameter
/// @param projection the projection that it belongs to
bool isFactor(const TQProjParam& parameter, const TQProjection& projection);

/// What no map has among the parameters of a projection: numbers that are not finite, factors that are not
/// above 0, angles beyond a whole turn, latitudes beyond a pole. A sentence each, beginning with the
/// parameter's name.
/// @param projection the projection
std::vector<std::string> impossibleParameters(const TQProjection& projection);
