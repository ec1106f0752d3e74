// Running hdiplot, by the shell, in a directory of its own.
#pragma once

#include <string>
#include <vector>

#include "tests/support/scratch.h"

namespace command {

struct Outcome {
  int status = -1;  // -1 when it was killed
  std::string out;
  std::string err;
};

// A new directory that is the command's current one.
class Workplace : public scratch::Directory {
 public:
  // Copies a file of tests/hdiplot here.
  void Fetch(const std::string& name) const;
  [[nodiscard]] bool Has(const std::string& name) const;
  [[nodiscard]] std::vector<std::string> Names() const;  // sorted

  // Runs the command with the fake module or the real one. The words are the shell's, redirections among
  // them; `before` are assignments such as "A=1 B=2", or commands that end in a semicolon each.
  [[nodiscard]] Outcome RunFake(const std::string& words, const std::string& before = "") const;
  [[nodiscard]] Outcome RunReal(const std::string& words, const std::string& before = "") const;

  // What the fake module has written since the last call.
  [[nodiscard]] std::string TakeLog() const;

 private:
  [[nodiscard]] Outcome Run(const std::string& words, const std::string& before) const;

  scratch::Directory beside_;  // for files that are none of the command's
};

// A drawing of one line from the origin to (width, height).
std::string LineDrawing(const std::string& width = "10", const std::string& height = "5");

// One message on standard error that holds the words, and nothing on standard output.
void ExpectFailure(const Outcome& outcome, const std::string& words, int status = 2);

}  // namespace command
