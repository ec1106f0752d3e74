// The tests, and the process that one of them starts.
#include <gtest/gtest.h>

#include "tests/windows/border/file_holder.h"

int main(int argc, char** argv) {
  if (border::RanAsFileHolder()) return 0;
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
