#include "projections/kernels/FourLanes.h"
#include "projections/kernels/PackRun.h"

namespace tq::kernels {

template <Way way, class Conversion>
bool runOnFour(const Conversion& conversion, TQPoint* points, signed char* isSpecial, std::size_t count) {
    return runOnPacks<FourLanes, way>(conversion, points, isSpecial, count);
}

TQ_INSTANTIATE_KERNELS(runOnFour)

} // namespace tq::kernels
