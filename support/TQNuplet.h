#pragma once

#include "TQSystemWExport.h"
#include "support/TQData.h"
#include "support/TQIdentity.h"
#include "support/TQObject.h"

#include <memory>
#include <vector>

/// An owned list of values that goes with a TQData, for instance the choices of an enumerated parameter.
class TQSYSTEMW_EXPORT TQNuplet : public TQObject {
    TQ_IDENTITY(TQNuplet, TQObject)

  public:
    /// An empty list.
    TQNuplet() = default;

    /// A list with copies of another one's values.
    /// @param other the other list
    TQNuplet(const TQNuplet& other);

    /// Takes a list's values over.
    /// @param other the other list, empty afterwards
    TQNuplet(TQNuplet&& other) noexcept = default;

    /// Takes another list's values, copied or moved.
    /// @param other the other list
    TQNuplet& operator=(TQNuplet other) noexcept;

    ~TQNuplet() override = default;

    /// Appends a value.
    /// @param value the value, which the list owns from now on; null is not added
    /// @return the value
    TQData* add(std::unique_ptr<TQData> value);

    /// The number of values.
    int count() const { return static_cast<int>(_values.size()); }

    /// A value, which stays the list's; null outside the list.
    /// @param index the value's index
    TQData* dataAt(int index) const;

    /// Whether the other object is a TQNuplet too, with equal values in the same order.
    /// @param other the object to compare with, or null
    bool isEqual(const TQObject* other) const override;

    /// Writes the block "TQNuplet": the count and the TQData part of each value.
    /// @param stream the stream to write to, not null
    void archiveTo(TQWriteStream* stream) const override;

    /// Reads what archiveTo() wrote, as plain TQData values. Nothing is changed when the stream fails or
    /// the version is unknown.
    /// @param stream the stream to read from, not null
    void unarchiveFrom(TQReadStream* stream) override;

  private:
    std::vector<std::unique_ptr<TQData>> _values;
};
