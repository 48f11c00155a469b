#include "projections/kernels/EightLanes.h"
#include "projections/kernels/PackRun.h"

namespace tq::kernels {

template <Way way, class Conversion>
bool runOnEight(const Conversion& conversion, TQPoint* points, signed char* isSpecial, std::size_t count) {
    return runOnPacks<EightLanes, way>(conversion, points, isSpecial, count);
}

TQ_INSTANTIATE_KERNELS(runOnEight)

} // namespace tq::kernels
