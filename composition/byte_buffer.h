// A growing run of bytes that is written in place: reserve room, write, say where the writing ended.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

namespace hdi {

class ByteBuffer {
 public:
  [[nodiscard]] std::string_view View() const { return {data_.get(), size_}; }
  [[nodiscard]] bool Empty() const { return size_ == 0; }

  // Room for `count` bytes behind what stands; valid until the next call.
  [[nodiscard]] char* Reserve(size_t count) {
    if (capacity_ - size_ < count) Grow(count);
    return data_.get() + size_;
  }
  // `end` is one past the last byte written in the room that Reserve gave.
  void Commit(const char* end) { size_ = static_cast<size_t>(end - data_.get()); }

  void Append(std::string_view text) {
    char* out = Reserve(text.size());
    std::memcpy(out, text.data(), text.size());
    Commit(out + text.size());
  }

 private:
  struct Free {
    void operator()(char* data) const { std::free(data); }
  };

  void Grow(size_t count) {
    constexpr size_t kFirst = 4096;
    size_t wanted = capacity_ < kFirst ? kFirst : capacity_ * 2;
    if (wanted < size_ + count) wanted = size_ + count;
    // realloc moves large blocks by their pages, without copying.
    auto* grown = static_cast<char*>(std::realloc(data_.get(), wanted));
    if (grown == nullptr) throw std::bad_alloc();
    (void)data_.release();
    data_.reset(grown);
    capacity_ = wanted;
  }

  std::unique_ptr<char, Free> data_;
  size_t size_ = 0;
  size_t capacity_ = 0;
};

}  // namespace hdi
