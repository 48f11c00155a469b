#pragma once

#include "manager/TQProjParam.h"

#include <memory>
#include <string_view>
#include <vector>

class TQProjection;

/// Whether a parameter belongs to the class of a projection: type, name and ellipsoid belong to every one.
/// @param name the parameter's name, UTF-8
bool isClassParameter(std::string_view name);

/// The parameters that belong to the class of a projection, in the order in which it lists them.
/// @param projection the projection
std::vector<std::unique_ptr<TQProjParam>> classParameters(const TQProjection& projection);
