#include "allocations.h"

#include <cstdlib>
#include <new>

namespace {
std::size_t count = 0;
}

void* operator new(std::size_t size) {
  ++count;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

namespace kivra {

std::size_t allocationCount() { return count; }

}  // namespace kivra
