#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>

/// A C stream that keeps what is written to it.
class CapturedStream {
  public:
    std::FILE* stream() const { return _stream.get(); }

    /// Everything written so far.
    std::string text() const {
        std::string text;
        std::array<char, 4096> block{};
        std::rewind(_stream.get());
        while (const std::size_t count = std::fread(block.data(), 1, block.size(), _stream.get())) {
            text.append(block.data(), count);
        }
        return text;
    }

  private:
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> _stream{std::tmpfile(), &std::fclose};
};
