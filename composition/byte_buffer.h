// A growing byte buffer that is written in place: reserve room, write, commit the end.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

namespace hdi {

class ByteBuffer {
 public:
  [[nodiscard]] std::string_view View() const { return {data_.get(), size_}; }
  [[nodiscard]] size_t Size() const { return size_; }
  // Keeps the bytes alive after StartAnew.
  [[nodiscard]] std::shared_ptr<const char[]> Owner() const { return data_; }

  // Returns room for `count` more bytes, valid until the next call. Throws std::bad_alloc.
  [[nodiscard]] char* Reserve(size_t count) {
    if (capacity_ - size_ < count) Grow(count);
    return data_.get() + size_;
  }
  // `end` is one past the last byte written into the room that Reserve returned.
  void Commit(const char* end) { size_ = static_cast<size_t>(end - data_.get()); }

  void Append(std::string_view text) {
    char* out = Reserve(text.size());
    std::memcpy(out, text.data(), text.size());
    Commit(out + text.size());
  }

  // Drops everything after the first `size` bytes.
  void Truncate(size_t size) { size_ = size; }

  // Starts over with an empty buffer in new memory; the first allocation has room for `capacity` bytes.
  void StartAnew(size_t capacity) {
    firstCapacity_ = capacity;
    data_.reset();
    size_ = 0;
    capacity_ = 0;
  }

 private:
  void Grow(size_t count) {
    size_t wanted = capacity_ == 0 ? firstCapacity_ : capacity_ * 2;
    if (wanted < size_ + count) wanted = size_ + count;
    auto grown = std::make_shared_for_overwrite<char[]>(wanted);
    if (size_ > 0) std::memcpy(grown.get(), data_.get(), size_);
    data_ = std::move(grown);
    capacity_ = wanted;
  }

  std::shared_ptr<char[]> data_;
  size_t size_ = 0;
  size_t capacity_ = 0;
  size_t firstCapacity_ = 4096;
};

}  // namespace hdi
