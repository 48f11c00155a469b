#include "tools/tqproj/BlockQueue.h"

#include "tools/tqproj/PointConverter.h"

#include <system_error>
#include <utility>

BlockQueue::BlockQueue(const PointConverter& converter, int jobs)
    : _source(converter), _greatestThreadCount(static_cast<std::size_t>(jobs) - 1),
      _converter(converter.newBlockConverter()), _tasks(2 * static_cast<std::size_t>(jobs)) {}

BlockQueue::~BlockQueue() {
    {
        const std::lock_guard lock(_mutex);
        _isEnding = true;
    }
    _blockAdded.notify_all();
    for (std::thread& thread : _threads) {
        thread.join();
    }
}

void BlockQueue::add(std::string_view lines) {
    std::unique_lock lock(_mutex);
    const bool isAnotherWaiting = _begun < _added;
    Task& last = task(_added++);
    last.block.lines.assign(lines);
    last.isDone = false;
    lock.unlock();
    if (isAnotherWaiting && _threads.size() < _greatestThreadCount) {
        startThread();
    }
    _blockAdded.notify_one();
}

const LineBlock& BlockQueue::take() {
    std::unique_lock lock(_mutex);
    Task& oldest = task(_taken);
    while (!oldest.isDone) {
        if (_begun < _added) {
            convertNext(*_converter, lock);
        } else {
            _blockDone.wait(lock);
        }
    }
    ++_taken;
    if (oldest.exception) {
        std::rethrow_exception(std::exchange(oldest.exception, nullptr));
    }
    return oldest.block;
}

// Where the system has no further thread to give, those that there are do the work.
void BlockQueue::startThread() {
    try {
        _threads.emplace_back([this, converter = _source.newBlockConverter()] { runThread(*converter); });
    } catch (const std::system_error&) {
        _greatestThreadCount = _threads.size();
    }
}

void BlockQueue::runThread(BlockConverter& converter) {
    std::unique_lock lock(_mutex);
    while (!_isEnding) {
        if (_begun < _added) {
            convertNext(converter, lock);
            _blockDone.notify_one();
        } else {
            _blockAdded.wait(lock);
        }
    }
}

// Without the lock while it converts: nobody else touches a block that was begun and is not done.
void BlockQueue::convertNext(BlockConverter& converter, std::unique_lock<std::mutex>& lock) {
    Task& next = task(_begun++);
    lock.unlock();
    try {
        converter.convert(next.block);
    } catch (...) {
        next.exception = std::current_exception();
    }
    lock.lock();
    next.isDone = true;
}
