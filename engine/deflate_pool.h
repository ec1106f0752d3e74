// Threads that compress pieces of streams beside the caller.
//
// They touch nothing but the bytes that they are given: the engine and the host see the caller's thread
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

// A piece and what becomes of it.
struct DeflateTask {
  DeflateTask(std::string_view taskBytes, PiecePlace taskPlace, std::shared_ptr<const char[]> taskOwner)
      : bytes(taskBytes), place(taskPlace), owner(std::move(taskOwner)) {}

  enum class State : uint8_t { kNew, kQueued, kRunning, kDone };

  std::string_view bytes;
  PiecePlace place;
  std::shared_ptr<const char[]> owner;  // of the bytes, let go when they are compressed; may be null
  DeflatedPiece piece;                  // of a task that is done; no data when there was no memory for it

  // The pool's, under its lock.
  State state = State::kNew;
  DeflateTask* next = nullptr;
};

// All operations are the caller's thread's.
class DeflatePool {
 public:
  // `workers`: threads beside the caller's, at most. They start when there is work for them.
  DeflatePool(Compression compression, unsigned workers);
  DeflatePool(const DeflatePool&) = delete;
  DeflatePool& operator=(const DeflatePool&) = delete;
  // No task may be left.
  ~DeflatePool();

  // Queues the task, which must live until it is done or withdrawn. With too many in the queue the caller
  // works on one.
  void Add(DeflateTask& task) noexcept;
  [[nodiscard]] bool IsDone(const DeflateTask& task);
  // Works on the queue until the task is done. Throws std::bad_alloc when there is still no memory for its
  // piece.
  void Finish(DeflateTask& task);
  // Takes the task out of the queue, or waits for its end when it has been begun.
  void Withdraw(DeflateTask& task);

 private:
  using Lock = std::unique_lock<std::mutex>;

  void StartWorker() noexcept;
  void Work();
  void Queue(DeflateTask& task);
  // Takes the task out of the queue; whether it was there.
  bool Unqueue(DeflateTask& task);
  // Works on the first task of the queue. Gives the lock up meanwhile.
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
