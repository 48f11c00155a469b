#pragma once

#include "support/TQPoint.h"

#include <algorithm>
#include <charconv>
#include <memory>
#include <proj.h>
#include <span>
#include <stdexcept>
#include <string>

/// The shortest text of a number that reads back as the same number, for PROJ strings.
inline std::string fullText(double number) {
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

/// An operation of PROJ with a context of its own, to compare with.
class ProjOperation {
  public:
    /// An operation by its PROJ string; angles are radians unless the string converts them.
    explicit ProjOperation(const std::string& definition) : ProjOperation() {
        _operation.reset(proj_create(_context.get(), definition.c_str()));
        if (_operation == nullptr) {
            throw std::invalid_argument("PROJ does not know: " + definition);
        }
    }

    /// The operation that PROJ finds from a geographic system to a projected one, in degrees with the
    /// longitude first.
    static ProjOperation betweenSystems(const std::string& geographic, const std::string& projected) {
        ProjOperation found;
        PJ* raw =
            proj_create_crs_to_crs(found._context.get(), geographic.c_str(), projected.c_str(), nullptr);
        const std::unique_ptr<PJ, Destroy> asFound(raw);
        found._operation.reset(proj_normalize_for_visualization(found._context.get(), asFound.get()));
        if (found._operation == nullptr) {
            throw std::invalid_argument("PROJ finds no way to: " + projected);
        }
        return found;
    }

    TQPoint forward(const TQPoint& geo) const { return transformed(PJ_FWD, geo); }
    TQPoint inverse(const TQPoint& global) const { return transformed(PJ_INV, global); }

    /// Converts points in one call.
    /// @param direction which way
    /// @param in the points
    /// @param out receives as many results
    void transformArray(PJ_DIRECTION direction, std::span<const TQPoint> in, std::span<TQPoint> out) const {
        std::ranges::copy(in, out.begin());
        proj_trans_generic(_operation.get(), direction, &out.front().x, sizeof(TQPoint), out.size(),
                           &out.front().y, sizeof(TQPoint), out.size(), nullptr, 0, 0, nullptr, 0, 0);
    }

    /// The handle, which this object owns.
    PJ* handle() const { return _operation.get(); }

  private:
    struct Destroy {
        void operator()(PJ_CONTEXT* context) const { proj_context_destroy(context); }
        void operator()(PJ* operation) const { proj_destroy(operation); }
    };

    /// Its context writes nothing to the error output.
    ProjOperation() : _context(proj_context_create()) { proj_log_level(_context.get(), PJ_LOG_NONE); }

    TQPoint transformed(PJ_DIRECTION direction, const TQPoint& point) const {
        const PJ_COORD result =
            proj_trans(_operation.get(), direction, proj_coord(point.x, point.y, 0.0, 0.0));
        return {result.xy.x, result.xy.y};
    }

    std::unique_ptr<PJ_CONTEXT, Destroy> _context;
    std::unique_ptr<PJ, Destroy> _operation;
};
