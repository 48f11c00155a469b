#pragma once

#include "proj/TQPrProj4.h"
#include "testing/CapturedMessages.h"
#include "testing/ProjOperation.h"
#include "tools/tqproj/map/MapProjection.h"

#include <memory>
#include <string>

/// A projection by a definition for PROJ, its points on the datum of the definition, as maps take it. What
/// the library says of points without an image is not heard while it lives.
class DefinedProjection {
  public:
    explicit DefinedProjection(const std::string& definition) {
        constexpr bool useWGS84Source = false;
        _projection->initFromPROJString(definition.c_str(), useWGS84Source);
        _images = std::make_unique<MapProjection>(*_projection);
    }

    const MapProjection& images() const { return *_images; }

    /// The same projection as PROJ itself converts it, from degrees, by a definition that begins with
    /// "+proj=".
    static ProjOperation inDegrees(const std::string& definition) {
        return ProjOperation("+proj=pipeline +step +proj=unitconvert +xy_in=deg +xy_out=rad +step " +
                             definition);
    }

  private:
    CapturedMessages _messages;
    std::unique_ptr<TQPrProj4> _projection = std::make_unique<TQPrProj4>();
    std::unique_ptr<MapProjection> _images;
};
