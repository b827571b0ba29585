#include "tests/faults/Allocations.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

thread_local long gLeft = 0;  // 0 plans nothing
thread_local bool gHasFailed = false;
std::atomic<long> gAlive{0};

}  // namespace

void allocations::plan(long n) {
    gLeft = n;
    gHasFailed = false;
}

bool allocations::takeFault() {
    gLeft = 0;
    return gHasFailed;
}

long allocations::alive() { return gAlive; }

void* operator new(std::size_t size) {
    if (gLeft > 0 && --gLeft == 0) {
        gHasFailed = true;
        throw std::bad_alloc();
    }
    void* memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) throw std::bad_alloc();
    ++gAlive;
    return memory;
}

void operator delete(void* memory) noexcept {
    if (memory != nullptr) --gAlive;
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }
