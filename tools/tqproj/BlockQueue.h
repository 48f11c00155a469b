#pragma once

#include "tools/tqproj/BlockConverter.h"
#include "tools/tqproj/LineBlock.h"

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <mutex>
#include <string_view>
#include <thread>
#include <vector>

class PointConverter;

/// Blocks of lines on their way through several threads, which come out in the order in which they went in.
///
/// The thread that owns the queue adds blocks and takes them, and converts as well while it waits for one;
/// so many jobs are as many threads less one. The threads are started as blocks wait for them: few lines need
/// none.
///
/// Memory is bounded: the queue holds two blocks a job, one at work and one to follow it, and their strings
/// are used again and again. Lines have at most blockSize bytes a block, which is at most half as many
/// points, each with results of a bounded length.
class BlockQueue {
  public:
    /// The greatest size of a block's lines in bytes: worth a thread's waking, and within its cache.
    static constexpr std::size_t blockSize = std::size_t{1} << 16;

    /// @param converter what the blocks are converted with; must outlive this object
    /// @param jobs how many threads convert, at least 1
    BlockQueue(const PointConverter& converter, int jobs);

    /// Ends the threads; blocks that were not taken are dropped.
    ~BlockQueue();

    BlockQueue(const BlockQueue&) = delete;
    BlockQueue& operator=(const BlockQueue&) = delete;

    /// Whether blocks are converted at all: the converter's operation can be copied.
    bool isUsable() const { return _converter != nullptr; }

    /// Whether there is no block.
    bool isEmpty() const { return _taken == _added; }

    /// Whether a block must be taken before another can be added.
    bool isFull() const { return _added - _taken == _tasks.size(); }

    /// Adds a block to a queue that is not full.
    /// @param lines its lines, at most blockSize bytes, each with its line end
    void add(std::string_view lines);

    /// Waits until the oldest block of a queue that is not empty is converted, and takes it. What was thrown
    /// while it was converted is thrown again.
    /// @return the block, which stays valid until the next one is added
    const LineBlock& take();

  private:
    /// A block and how far it has come.
    struct Task {
        LineBlock block;
        bool isDone = false;
        std::exception_ptr exception;
    };

    Task& task(std::uint64_t number) { return _tasks[number % _tasks.size()]; }
    void startThread();
    void runThread(BlockConverter& converter);
    void convertNext(BlockConverter& converter, std::unique_lock<std::mutex>& lock);

    const PointConverter& _source;
    std::size_t _greatestThreadCount;
    std::unique_ptr<BlockConverter> _converter; // of the owner's thread; the others have their own
    std::vector<Task> _tasks;                   // a ring

    std::mutex _mutex; // guards all that follows, and the tasks but for the block of one at work
    std::condition_variable _blockAdded;
    std::condition_variable _blockDone;
    std::uint64_t _added = 0; // numbers of blocks, written by the owner's thread alone
    std::uint64_t _taken = 0;
    std::uint64_t _begun = 0; // written by all
    bool _isEnding = false;

    std::vector<std::thread> _threads;
};
