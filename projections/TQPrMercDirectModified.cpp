#include "projections/TQPrMercDirectModified.h"

#include "projections/kernels/TQKernels.h"

const TQProjectionStatement& TQPrMercDirectModified::statement() {
    using P = TQProjectionParameter;
    static constexpr P parameters[] = {
        {"_latitudeScaleFactor", P::none, &TQPrMercDirectModified::_latitudeScaleFactor, 1e-5, P::tenDecimals,
         5510},
    };
    static constexpr TQProjectionStatement statement{
        .textBlock = TQProjectionStatement::noTextBlock(writeFailed),
        .archiveVersion = 0,
        .parameters = TQProjectionParameters(parameters),
    };
    return statement;
}

TQPrMercDirectModified::TQPrMercDirectModified() = default;

TQPrMercDirectModified::TQPrMercDirectModified(const TQPrMercDirectModified& other)
    : TQStatedProjection(other) {
    copyStated(other);
}

TQPrMercDirectModified::~TQPrMercDirectModified() = default;

const TQProjection::Runs& TQPrMercDirectModified::runs() { return TQKernels<TQPrMercDirectModified>::runs(); }
