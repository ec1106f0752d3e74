// The aligned allocation that the engine asks for where its compiler is not the platform's own. Its blocks
// would go back through free(), which takes no aligned ones here, so there are none. Of what we build of the
// engine nothing asks: the one caller is replaced by openjpeg_memory.cpp.
#pragma once

#include <cerrno>
#include <cstddef>

inline int posix_memalign(void** /*block*/, std::size_t /*alignment*/, std::size_t /*size*/) {
  return ENOMEM;
}
