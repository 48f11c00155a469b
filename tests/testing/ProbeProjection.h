#pragma once

#include "projection/TQProjection.h"

#include <functional>
#include <vector>

/// A projection for tests: images, validity and shapes are what the test says, and it records what it is
/// asked.
class ProbeProjection : public TQProjection {
    TQ_PROJECTION(ProbeProjection, TQProjection, 42, "Probe")

  public:
    using Conversion = std::function<int(const TQPoint& from, TQPoint& to)>;

    ProbeProjection() = default;
    explicit ProbeProjection(Conversion itsForward) : forward(std::move(itsForward)) {}

    Conversion forward;                         ///< convertGeoPt(); the root's without one
    Conversion inverse;                         ///< convertGlobalPt(); the root's without one
    std::function<bool(const TQPoint&)> valid;  ///< isGeoPtValid(); the root's without one
    int meridian = TQProjection::GeneralCurve;  ///< meridianShape()
    int parallel = TQProjection::GeneralCurve;  ///< parallelShape()
    TQPoint itsCenter;                          ///< center()
    int initialisations = 0;                    ///< how often initConstants() was called
    int unarchivings = 0;                       ///< how often unarchiveFrom() was called
    std::function<int(TQFile&)> writer;         ///< writeToFile(); the root's without one
    mutable std::vector<TQPoint> converted;     ///< the points that convertGeoPt() was given
    mutable std::vector<TQPoint> askedForValid; ///< the points that isGeoPtValid() was given

    int initConstants() override {
        ++initialisations;
        return 0;
    }
    void unarchiveFrom(TQReadStream* stream) override {
        ++unarchivings;
        TQProjection::unarchiveFrom(stream);
    }
    int writeToFile(TQFile& file, bool withHeader) const override {
        return writer ? writer(file) : TQProjection::writeToFile(file, withHeader);
    }
    int convertGeoPt(const TQPoint& geo, TQPoint& global) const override {
        converted.push_back(geo);
        return forward ? forward(geo, global) : TQProjection::convertGeoPt(geo, global);
    }
    int convertGlobalPt(const TQPoint& global, TQPoint& geo) const override {
        return inverse ? inverse(global, geo) : TQProjection::convertGlobalPt(global, geo);
    }
    bool isGeoPtValid(const TQPoint& geo) const override {
        askedForValid.push_back(geo);
        return valid ? valid(geo) : TQProjection::isGeoPtValid(geo);
    }
    int meridianShape() const override { return meridian; }
    int parallelShape() const override { return parallel; }
    TQPoint center() const override { return itsCenter; }
};
