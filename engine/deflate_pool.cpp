// One queue under one lock. A task takes milliseconds, so the lock is not contended.
#include "engine/deflate_pool.h"

#include <algorithm>
#include <exception>
#include <new>

namespace hdi::engine {
namespace {

// More would only wait for the replay, except at the highest compression.
constexpr unsigned kMostWorkers = 15;
// Queued tasks beyond one a worker. Bounds the memory of the queue.
constexpr size_t kSpareTasks = 1;

}  // namespace

unsigned DefaultWorkers() {
  const unsigned threads = std::thread::hardware_concurrency();  // 0 if unknown
  return threads <= 1 ? 0 : std::min(threads - 1, kMostWorkers);
}

DeflatePool::DeflatePool(Compression compression, unsigned workers)
    : compression_(compression), workersAtMost_(workers), deflater_(compression) {}

DeflatePool::~DeflatePool() {
  {
    const Lock lock(mutex_);
    isStopping_ = true;
  }
  hasTask_.notify_all();
  for (std::thread& worker : workers_) worker.join();
}

void DeflatePool::Add(DeflateTask& task) noexcept {
  Lock lock(mutex_);
  Queue(task);
  // A small drawing is one page of one piece; the caller finishes that one at once, so no thread is started
  // for it.
  if (task.place == PiecePlace::kInner || hasHadTask_) StartWorker();
  hasHadTask_ = true;
  hasTask_.notify_one();
  const size_t waitAtMost = workers_.empty() ? 0 : workers_.size() + kSpareTasks;
  while (queued_ > waitAtMost) RunNext(lock, deflater_);
}

bool DeflatePool::IsDone(const DeflateTask& task) {
  const Lock lock(mutex_);
  return task.state == DeflateTask::State::kDone;
}

void DeflatePool::Finish(DeflateTask& task) {
  Lock lock(mutex_);
  while (task.state != DeflateTask::State::kDone) {
    if (first_ == nullptr) {
      isDone_.wait(lock);
    } else {
      RunNext(lock, deflater_);
    }
  }
  if (task.piece.data == nullptr) task.piece = deflater_.Compress(task.bytes, task.place);
}

void DeflatePool::Withdraw(DeflateTask& task) {
  Lock lock(mutex_);
  if (Unqueue(task)) return;
  isDone_.wait(lock, [&task] { return task.state != DeflateTask::State::kRunning; });
}

void DeflatePool::StartWorker() noexcept {
  if (workers_.size() >= workersAtMost_) return;
  try {
    workers_.emplace_back([this] { Work(); });
  } catch (const std::exception&) {
    workersAtMost_ = workers_.size();  // no more threads: go on with those that exist
  }
}

void DeflatePool::Queue(DeflateTask& task) {
  DeflateTask** end = &first_;
  while (*end != nullptr) end = &(*end)->next;
  *end = &task;
  task.next = nullptr;
  task.state = DeflateTask::State::kQueued;
  ++queued_;
}

bool DeflatePool::Unqueue(DeflateTask& task) {
  for (DeflateTask** link = &first_; *link != nullptr; link = &(*link)->next) {
    if (*link != &task) continue;
    *link = task.next;
    --queued_;
    return true;
  }
  return false;
}

void DeflatePool::Work() {
  Deflater deflater(compression_);
  Lock lock(mutex_);
  for (;;) {
    hasTask_.wait(lock, [this] { return isStopping_ || first_ != nullptr; });
    if (first_ == nullptr) return;
    RunNext(lock, deflater);
  }
}

void DeflatePool::RunNext(Lock& lock, Deflater& deflater) {
  DeflateTask& task = *first_;
  Unqueue(task);
  task.state = DeflateTask::State::kRunning;
  lock.unlock();
  try {
    task.piece = deflater.Compress(task.bytes, task.place);
    task.owner.reset();
  } catch (const std::bad_alloc&) {
    task.piece = {};
  }
  lock.lock();
  task.state = DeflateTask::State::kDone;
  isDone_.notify_all();
}

}  // namespace hdi::engine
