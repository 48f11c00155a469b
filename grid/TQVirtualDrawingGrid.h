#pragma once

#include "TQProjectionExport.h"

#include <memory>

class TQReadStream;
class TQWriteStream;

/// Bytes that the drawing program keeps with a map grid; the library gives them no meaning.
class TQPROJECTION_EXPORT TQVirtualDrawingGrid {
  public:
    /// A block of bytes.
    /// @param data the first byte
    /// @param size how many bytes; below 1 the block is null, and so it is without data
    /// @param copy true: the bytes are copied; false: the memory, made by `malloc`, is this object's from now
    ///        on, also when the size is below 1
    TQVirtualDrawingGrid(char* data, int size, bool copy);

    /// A copy with bytes of its own.
    TQVirtualDrawingGrid(const TQVirtualDrawingGrid& other);
    TQVirtualDrawingGrid& operator=(const TQVirtualDrawingGrid&) = delete;
    ~TQVirtualDrawingGrid();

    /// Reads block "TQVirtualDrawingGrid", version 0. The block is null when its size is below 1; also when
    /// an unknown version, which is reported, was found and nothing read, and when the bytes are not there,
    /// which fails the stream.
    /// @param stream the stream to read from, not null
    explicit TQVirtualDrawingGrid(TQReadStream* stream);

    /// What the constructor reads, for readers of what follows: they cannot know where a block of an unknown
    /// version ends.
    /// @param stream the stream to read from, not null
    /// @return the block; null after an unknown version or a fault, and the stream has failed
    static std::unique_ptr<TQVirtualDrawingGrid> newFromStream(TQReadStream* stream);

    /// The bytes, which stay this object's; null for a null block.
    /// @param size receives how many there are; may be null
    char* getInternalData(int* size) const;

    /// Writes block "TQVirtualDrawingGrid", version 0: the size as an integer, and the bytes.
    /// @param stream the stream to write to, not null
    void archiveTo(TQWriteStream* stream) const;

  private:
    /// Gives memory back to `malloc`, where applications took it from.
    struct Free {
        void operator()(char* data) const;
    };

    using Memory = std::unique_ptr<char, Free>;

    TQVirtualDrawingGrid() = default;

    static Memory allocated(int size);
    bool read(TQReadStream& stream);

    Memory _data;
    int _size = 0;
};
