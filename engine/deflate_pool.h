// Worker threads that compress pieces of streams.
//
// They touch only the bytes they are given; the engine and the host are called from the caller's thread
// alone.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "engine/deflate.h"

namespace hdi::engine {

// A piece and its result.
struct DeflateTask {
  DeflateTask(std::string_view taskBytes, PiecePlace taskPlace, std::shared_ptr<const char[]> taskOwner)
      : bytes(taskBytes), place(taskPlace), owner(std::move(taskOwner)) {}

  enum class State : uint8_t { kNew, kQueued, kRunning, kDone };

  std::string_view bytes;
  PiecePlace place;
  std::shared_ptr<const char[]> owner;  // of the bytes, released once they are compressed; may be null
  DeflatedPiece piece;                  // the result; no data if memory ran out

  // Owned by the pool, under its lock.
  State state = State::kNew;
  DeflateTask* next = nullptr;
};

// All operations belong to the caller's thread.
class DeflatePool {
 public:
  // At most `workers` threads beside the caller's, started when there is work for them.
  DeflatePool(Compression compression, unsigned workers);
  DeflatePool(const DeflatePool&) = delete;
  DeflatePool& operator=(const DeflatePool&) = delete;
  // No task may be left.
  ~DeflatePool();

  // Queues the task, which must live until it is done or withdrawn. If the queue is full, the caller
  // compresses a task.
  void Add(DeflateTask& task) noexcept;
  [[nodiscard]] bool IsDone(const DeflateTask& task);
  // Works on the queue until the task is done. Throws std::bad_alloc if there is still no memory for its
  // piece.
  void Finish(DeflateTask& task);
  // Removes the task from the queue, or waits for it if it is running.
  void Withdraw(DeflateTask& task);

 private:
  using Lock = std::unique_lock<std::mutex>;

  void StartWorker() noexcept;
  void Work();
  void Queue(DeflateTask& task);
  // Removes the task from the queue; false if it was not there.
  bool Unqueue(DeflateTask& task);
  // Runs the first task of the queue, releasing the lock meanwhile.
  void RunNext(Lock& lock, Deflater& deflater);

  Compression compression_;
  size_t workersAtMost_;
  Deflater deflater_;  // the caller's
  std::mutex mutex_;
  std::condition_variable hasTask_;
  std::condition_variable isDone_;
  DeflateTask* first_ = nullptr;  // of the queue
  size_t queued_ = 0;
  bool hasHadTask_ = false;
  bool isStopping_ = false;
  std::vector<std::thread> workers_;
};

}  // namespace hdi::engine
