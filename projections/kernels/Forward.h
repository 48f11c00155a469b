#pragma once

// The names that the headers of the classes need of the kernels.

namespace tq::kernels {

struct BonneConversion;
struct CassiniSoldnerConversion;
struct DirectMercatorConversion;
struct EquirectangularConversion;
struct GctpMercatorConversion;
struct HotineConversion;
struct LambertConversion;
struct PolarAzimuthalConversion;
struct PolarGnomonicConversion;
struct PolarStereographicConversion;
struct SwissConversion;
struct TransverseMercatorConversion;

} // namespace tq::kernels

template <class Class>
class TQKernels;
