#pragma once

#include "support/TQWriteStream.h"

#include <span>
#include <vector>

/// A binary archive written into memory that the stream owns and lets grow.
class TQSYSTEMW_EXPORT TQWriteMemStream : public TQWriteStream {
  public:
    TQWriteMemStream();
    ~TQWriteMemStream() override;

    /// The bytes written so far and their count; valid until the next write and while the stream lives.
    std::span<const char> getMemory() const;

  protected:
    void put(const char* bytes, std::size_t count) override;

  private:
    std::vector<char> _bytes;
};
