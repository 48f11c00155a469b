// Prints docs/resource-tree.md: the ellipsoids, datums and projections of the generated resource tree with
// their EPSG codes, and how far the projections and datums are from PROJ's.
//
//   resource-table

#include "resources/ResourceTree.h"

#include <cstdio>
#include <exception>
#include <string>

using resourcetree::compare;
using resourcetree::Comparison;
using resourcetree::EpsgObject;
using resourcetree::EpsgTransformation;
using resourcetree::linesOf;
using resourcetree::projectionOf;

namespace {

/// A length with its unit, to the tenth of a millimetre.
std::string length(double metres) {
    char text[32];
    if (metres < 5e-5) {
        return "< 0.1 mm";
    }
    std::snprintf(text, sizeof text, metres < 1.0 ? "%.1f mm" : "%.2f m",
                  metres < 1.0 ? metres * 1e3 : metres);
    return text;
}

std::string nameOf(const EpsgObject& object) { return proj_get_name(object.handle()); }

void printEllipsoids() {
    std::printf("\n## Ellipsoids\n\n| name | EPSG |\n|---|---|\n");
    for (const CodeLine& line : linesOf("ellipsoids.tsv")) {
        std::printf("| %s | %s |\n", line.name.c_str(), line.code.c_str());
    }
}

const TQEllipsoid* shiftedEllipsoid(const TQProjMgr& manager, const std::string& datum) {
    HashState<TQEllipsoid> state;
    while (const TQEllipsoid* ellipsoid = manager.ellipsoidManager().ellipsoids().next(state)) {
        if (ellipsoid->hasDatumShift() && ellipsoid->name()->utf8().ends_with("/" + datum)) {
            return ellipsoid;
        }
    }
    return nullptr;
}

/// The accuracy that the data set gives a transformation; 999 m stands for none.
std::string statedAccuracy(const EpsgObject& object) {
    constexpr double unknown = 999.0;
    const double accuracy = proj_coordoperation_get_accuracy(object.context(), object.handle());
    char text[32];
    std::snprintf(text, sizeof text, "%g m", accuracy);
    return accuracy < unknown ? text : "not known";
}

/// The beginning of the description of an area of use.
std::string areaOf(const EpsgObject& object) {
    const char* area = nullptr;
    proj_get_area_of_use(object.context(), object.handle(), nullptr, nullptr, nullptr, nullptr, &area);
    std::string text = area != nullptr ? area : "";
    if (text.ends_with('.')) {
        text.pop_back();
    }
    constexpr std::size_t enough = 60;
    const std::size_t end = text.find(' ', enough);
    return end == std::string::npos ? text : text.substr(0, end) + " …";
}

void printDatum(const TQProjMgr& manager, const CodeLine& line) {
    const EpsgObject object(line.code, PJ_CATEGORY_COORDINATE_OPERATION);
    const EpsgTransformation reference(line.code);
    const TQEllipsoid& ellipsoid = *shiftedEllipsoid(manager, line.name);
    Differences toLocal;
    Differences toReference;
    for (const TQPoint& point : reference.points()) {
        TQPoint local = point;
        ellipsoid.toLocalDatum(local.x, local.y);
        toLocal.add(ellipsoid.semiMajorAxis() * groundAngle(local, reference.toLocal(point)));
        TQPoint back = point;
        ellipsoid.toReferenceDatum(back.x, back.y);
        toReference.add(ellipsoid.semiMajorAxis() * groundAngle(back, reference.toWgs84(point)));
    }
    std::printf("| %s | %s, %s | %s | %d | %s | %s | %s | %s |\n", line.name.c_str(), line.code.c_str(),
                nameOf(object).c_str(), areaOf(object).c_str(),
                ellipsoid.datumShiftKind() == TQEllipsoid::ThreeParameterShift ? 3 : 7,
                statedAccuracy(object).c_str(), ellipsoid.name()->utf8().c_str(),
                length(toLocal.max()).c_str(), length(toReference.max()).c_str());
}

void printDatums(const TQProjMgr& manager) {
    std::printf("\n## Datums\n\n"
                "| name | EPSG | area | parameters | accuracy | ellipsoid | to local | to WGS 84 |\n"
                "|---|---|---|---|---|---|---|---|\n");
    for (const CodeLine& line : linesOf("datums.tsv")) {
        printDatum(manager, line);
    }
}

void printProjections(TQProjMgr& manager) {
    std::printf("\n## Projections\n\n"
                "| name | EPSG | type | datum | forward | inverse | with the shift |\n"
                "|---|---|---|---|---|---|---|\n");
    for (const CodeLine& line : linesOf("projections.tsv")) {
        TQProjection& projection = *projectionOf(manager, line);
        const Comparison comparison = compare(projection, line);
        std::printf("| %s | %s, %s | %s | %s | %s | %s | %s |\n", line.name.c_str(), line.code.c_str(),
                    nameOf(EpsgObject(line.code, PJ_CATEGORY_CRS)).c_str(),
                    projection.typeName().utf8().c_str(), line.datum.c_str(),
                    length(comparison.forward.max()).c_str(), length(comparison.inverse.max()).c_str(),
                    line.datum.empty() ? "" : length(comparison.shifted.max()).c_str());
    }
}

} // namespace

int main() {
    try {
        TQProjMgr manager(true);
        std::printf("# The generated resource tree\n\n"
                    "What `tqresources` writes; printed by `resource-table`. [resources.md](resources.md) "
                    "tells how and explains\n"
                    "the differences, which are the largest at 25 points over the area of use: for datums on "
                    "the ground, beside\n"
                    "PROJ's result for the transformation; for projections on the plane (forward, with the "
                    "shift) or on the\n"
                    "ground (inverse), beside PROJ's result for the system. Datums have the accuracy that "
                    "the data set gives.\n");
        printEllipsoids();
        printDatums(manager);
        printProjections(manager);
    } catch (const std::exception& fault) {
        std::fprintf(stderr, "resource-table: %s\n", fault.what());
        return 1;
    }
}
