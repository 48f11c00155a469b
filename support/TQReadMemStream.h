#pragma once

#include "support/TQReadStream.h"

/// A binary archive read from a block of memory, which the caller owns and keeps while the stream lives.
class TQSYSTEMW_EXPORT TQReadMemStream : public TQReadStream {
  public:
    /// A stream at the first byte of the block.
    /// @param bytes the first byte; null is the empty block
    /// @param count how many bytes
    /// @param version the answer of streamVersion()
    /// @param flags the first value of flags()
    TQReadMemStream(const void* bytes, std::size_t count, int version = 0, std::uint32_t flags = 0);
    ~TQReadMemStream() override;

  protected:
    std::uint64_t sourceLeft() const override;
    void peek(char* bytes, std::size_t count) override;
    void skip(std::uint64_t count) override;

  private:
    const char* _next; // in the caller's block
    std::size_t _left;
};
