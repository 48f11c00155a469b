#pragma once

#include "support/TQPoint.h"

#include <map>
#include <memory>
#include <proj.h>
#include <stdexcept>
#include <string>
#include <vector>

/// Why something of the EPSG data set cannot be made.
class NotExpressible : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// An ellipsoid of the EPSG data set.
struct EpsgEllipsoid {
    double semiMajorAxis; ///< metres
    double eccentricitySquared;
};

/// The method of an operation of the EPSG data set and its parameters by their codes: angles in degrees,
/// lengths in metres, scales as factors.
struct EpsgOperation {
    int method;
    std::map<int, double> parameters;

    /// A parameter that the method has.
    double parameter(int code) const;
};

/// A transformation to WGS 84.
struct EpsgShift {
    EpsgOperation operation;
    std::string datum;         ///< the EPSG name of the datum that it leads from
    std::string ellipsoidCode; ///< of that datum
};

/// A geographic point, in radians from Greenwich on the datum of the system, and its image.
struct ImagePair {
    TQPoint geo;
    TQPoint global;
};

/// An area of use in degrees from Greenwich on WGS 84; the east is less than the west where it passes the
/// 180th meridian.
struct EpsgArea {
    double west;
    double south;
    double east;
    double north;
};

/// A projected system.
struct EpsgSystem {
    EpsgOperation conversion;
    std::string datum;             ///< the EPSG name of its datum
    std::string ellipsoidCode;     ///< of that datum
    double primeMeridian;          ///< degrees from Greenwich
    std::vector<ImagePair> images; ///< PROJ's images of 25 points over its area of use
};

/// The EPSG data set, in PROJ's database.
class EpsgDataSet {
  public:
    EpsgDataSet();

    /// The version of the data set.
    std::string version() const;

    // Each throws NotExpressible for what the data set or the library does not have.
    EpsgEllipsoid ellipsoid(const std::string& code) const;
    EpsgShift shiftToWgs84(const std::string& code) const;
    EpsgSystem system(const std::string& code) const;
    EpsgArea areaOfUse(const std::string& code) const;

  private:
    struct Destroy {
        void operator()(PJ_CONTEXT* context) const { proj_context_destroy(context); }
        void operator()(PJ* object) const { proj_destroy(object); }
    };
    using Object = std::unique_ptr<PJ, Destroy>;

    Object object(const std::string& code, PJ_CATEGORY category) const;
    static Object existing(PJ* object);
    EpsgOperation operation(const PJ* operation) const;
    std::string datumName(const PJ* system) const;
    std::string ellipsoidCode(const PJ* system) const;
    double primeMeridian(const PJ* geographic) const;
    EpsgArea area(const PJ* system) const;
    std::vector<ImagePair> images(const PJ* system, const PJ* geographic) const;
    void expectMetres(const PJ* system) const;
    double degreesOfUnit(const PJ* geographic) const;

    std::unique_ptr<PJ_CONTEXT, Destroy> _context;
};
