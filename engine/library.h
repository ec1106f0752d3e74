// The lifetime of the engine.
#pragma once

namespace hdi::engine {

// Initializes the engine while it lives; must outlive every document. One at a time.
class Library {
 public:
  Library();
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  ~Library();
};

}  // namespace hdi::engine
