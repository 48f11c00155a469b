#include "proj/TQGeoCSTrans.h"

#include "proj/TQProjCalls.h"
#include "support/TQMessages.h"
#include "support/TQReadStream.h"
#include "support/TQUnit.h"
#include "support/TQWriteStream.h"

#include <limits>

namespace {

constexpr const char* className = "TQGeoCSTrans";
constexpr int notGeographic = -1;
constexpr int unknownVersion = -1;

TQString definitionOrWGS84(const TQString& definition) {
    return definition.isEmpty() ? TQString("EPSG:4326") : definition;
}

TQString unarchivedText(TQReadStream* stream) {
    const auto text = TQString::unarchiveFrom(stream);
    return text ? *text : TQString();
}

} // namespace

TQGeoCSTrans::TQGeoCSTrans(const TQString& source, const TQString& target)
    : _sourceDefinition(definitionOrWGS84(source)), _targetDefinition(definitionOrWGS84(target)) {
    _initFromDefinitions(TQProjTrust::Full);
}

TQGeoCSTrans::TQGeoCSTrans(const char* source, const char* target)
    : TQGeoCSTrans(tq_projText(source), tq_projText(target)) {}

TQGeoCSTrans::TQGeoCSTrans(const TQString& target) : TQGeoCSTrans(TQString(), target) {}

TQGeoCSTrans::TQGeoCSTrans(const char* target) : TQGeoCSTrans(tq_projText(target)) {}

TQGeoCSTrans::TQGeoCSTrans(TQReadStream* stream) {
    const int version = stream->version(className);
    if (version != 0) {
        _projError = unknownVersion;
        tq_perrorf("TQGeoCSTrans::TQGeoCSTrans(TQReadStream *): version %d is unknown.\n", version);
        return;
    }
    _sourceDefinition = unarchivedText(stream);
    _targetDefinition = unarchivedText(stream);
    _initFromDefinitions(TQProjTrust::None);
}

TQGeoCSTrans::~TQGeoCSTrans() = default;

void TQGeoCSTrans::archiveTo(TQWriteStream* stream) const {
    stream->declareVersion(className, 0);
    TQString::archive(&_sourceDefinition, stream);
    TQString::archive(&_targetDefinition, stream);
}

/// A geographic system with two dimensions; null, and reported, when the definition gives none.
TQProjHandle TQGeoCSTrans::newSystem(const TQString& definition, const char* role) {
    TQProjHandle system = tq_newProjObject(_projContext.get(), definition);
    if (!system) {
        _projError = proj_context_errno(_projContext.get());
        tq_perrorf("TQGeoCSTrans::_initFromDefinitions: PROJ error: %s\n",
                   tq_projErrorText(_projContext.get(), _projError));
    } else if (proj_get_type(system.get()) != PJ_TYPE_GEOGRAPHIC_2D_CRS) {
        _projError = notGeographic;
        tq_perrorf("TQGeoCSTrans::_initFromDefinitions: PROJ %s is not geographic2D - not supported\n", role);
        system.reset();
    }
    return system;
}

void TQGeoCSTrans::_initFromDefinitions(TQProjTrust trust) {
    const std::lock_guard lock(_mutex);
    _projContext = tq_newProjContext(trust, _projLog);
    const TQProjHandle source = newSystem(_sourceDefinition, "source");
    const TQProjHandle target = source ? newSystem(_targetDefinition, "target") : nullptr;
    if (!target) {
        return;
    }
    _sourceUnitInDegrees = tq_angularUnitInDegrees(_projContext.get(), source.get());
    _targetUnitInDegrees = tq_angularUnitInDegrees(_projContext.get(), target.get());
    _projTransform = tq_newProjTransformation(_projContext.get(), source.get(), target.get());
    if (!_projTransform) {
        _projError = proj_context_errno(_projContext.get());
        tq_perrorf("TQGeoCSTrans::_initFromDefinitions: PROJ error :%s\n",
                   tq_projErrorText(_projContext.get(), _projError));
        return;
    }
    _isBallpark = tq_isBallpark(_projContext.get(), _projTransform.get());
    _projLog.clear(); // of an operation that stands for several PROJ cannot tell
}

void TQGeoCSTrans::refuseBallpark() {
    const std::lock_guard lock(_mutex);
    _refusesBallpark = true;
}

/// Whether the last point was transformed in a way that is not wanted.
bool TQGeoCSTrans::isRefused() {
    return _refusesBallpark && (_isBallpark || tq_wasBallpark(_projContext.get(), _projTransform.get()));
}

bool TQGeoCSTrans::_transformationDecDeg(int direction, const TQPoint& in, TQPoint& out) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const std::lock_guard lock(_mutex);
    TQPoint point = in;
    if (_projTransform) {
        _projLog.clear();
        _projError = tq_projTransform(_projTransform.get(), static_cast<PJ_DIRECTION>(direction), point);
        const bool isRefusedOnly = _projError == 0 && isRefused();
        if (_projError == 0 && !isRefusedOnly) {
            out = point;
            return true;
        }
        tq_perrorf("TQGeoCSTrans::_transformationDecDeg (%d): PROJ error :%s\n", direction,
                   isRefusedOnly ? TQString(tq_noTransformationHere)
                                 : tq_projErrorText(_projContext.get(), _projError));
    }
    out = {infinity, infinity};
    return false;
}

bool TQGeoCSTrans::transformationRad(int direction, const TQPoint& in, TQPoint& out) {
    const bool transformed = _transformationDecDeg(direction, {tq_rad2deg(in.x), tq_rad2deg(in.y)}, out);
    if (transformed) {
        out = {tq_deg2rad(out.x), tq_deg2rad(out.y)};
    }
    return transformed;
}

bool TQGeoCSTrans::forwardTransformationDecDeg(const TQPoint& in, TQPoint& out) {
    return _transformationDecDeg(PJ_FWD, in, out);
}

bool TQGeoCSTrans::inverseTransformationDecDeg(const TQPoint& in, TQPoint& out) {
    return _transformationDecDeg(PJ_INV, in, out);
}

bool TQGeoCSTrans::forwardTransformationRad(const TQPoint& in, TQPoint& out) {
    return transformationRad(PJ_FWD, in, out);
}

bool TQGeoCSTrans::inverseTransformationRad(const TQPoint& in, TQPoint& out) {
    return transformationRad(PJ_INV, in, out);
}
