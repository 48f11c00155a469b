#pragma once

#include "TQProjectionExport.h"
#include "support/TQData.h"
#include "support/TQIdentity.h"
#include "support/TQNuplet.h"
#include "support/TQString.h"

#include <memory>
#include <utility>

/// A named, typed parameter of a projection with its unit label, as an editor of projections shows it.
///
/// Parameters travel in a `HashTbl<TQProjParam>` keyed by their names: TQProjection::getParams() fills
/// one, TQProjection::setParams() takes one. The class needs nothing of a projection; it stands beside
/// the manager that makes projections from such tables, and the projections themselves use it.
class TQPROJECTION_EXPORT TQProjParam : public TQData {
    TQ_IDENTITY(TQProjParam, TQData)

  public:
    /// A parameter with any value that TQData holds.
    /// @param name the parameter's name
    /// @param value a Logical, an int, a double, a TQString (copied) or a TQSharedString* (a use is counted)
    /// @param label the unit label; empty for none
    /// @param choices the list that goes with the value, such as the choices of an enumerated parameter, or
    /// null
    template <class Value>
    TQProjParam(const TQString& name, const Value& value, const TQString& label,
                std::unique_ptr<TQNuplet> choices = nullptr)
        : TQData(name, value), _label(label.isEmpty() ? nullptr : std::make_unique<TQString>(label)),
          _choices(std::move(choices)) {}

    /// A copy with its own label and list.
    /// @param other the parameter to copy
    TQProjParam(const TQProjParam& other);
    TQProjParam& operator=(const TQProjParam&) = delete;
    ~TQProjParam() override;

    /// The unit label; null when it is empty.
    const TQString* unitLabel() const { return _label.get(); }

    /// The list that goes with the value, or null.
    const TQNuplet* choices() const { return _choices.get(); }

  private:
    std::unique_ptr<TQString> _label;
    std::unique_ptr<TQNuplet> _choices;
};
