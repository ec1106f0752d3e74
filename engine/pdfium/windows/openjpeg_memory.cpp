// The memory of OpenJPEG, in place of the unit in the engine's archive: there, blocks with an alignment are
// freed like those without, which the platform's allocator does not take.
#include <malloc.h>

#include <cstdlib>

extern "C" {

void* opj_malloc(size_t size) { return std::malloc(size); }

void* opj_calloc(size_t count, size_t size) { return std::calloc(count, size); }

void* opj_realloc(void* block, size_t size) { return std::realloc(block, size); }

void opj_free(void* block) { std::free(block); }

void* opj_aligned_malloc(size_t size) { return size == 0 ? nullptr : _aligned_malloc(size, 16); }

void* opj_aligned_32_malloc(size_t size) { return size == 0 ? nullptr : _aligned_malloc(size, 32); }

void opj_aligned_free(void* block) { _aligned_free(block); }

}  // extern "C"
