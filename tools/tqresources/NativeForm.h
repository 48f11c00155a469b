#pragma once

#include "tools/tqresources/EpsgDataSet.h"

#include <memory>
#include <utility>
#include <vector>

class TQProjection;

/// A projection class of the library and its parameters.
struct NativeForm {
    int typeCode;
    std::vector<std::pair<const char*, double>> parameters;
    /// Whether its file keeps six decimals of angles, so that its false origin is to be adjusted.
    bool isRounded = false;

    double& parameter(const char* name);

    /// A projection of this form, without name and ellipsoid.
    std::unique_ptr<TQProjection> make() const;
};

/// The native form of a projected system; throws NotExpressible when no class has its method.
NativeForm nativeFormOf(const EpsgSystem& system);
