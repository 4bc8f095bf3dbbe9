// A value that a process shares with its children (mmap, POSIX), set to zeros.
#pragma once

#include <sys/mman.h>

#include <type_traits>

template <typename Value>
class SharedMemory {
    static_assert(std::is_trivially_destructible_v<Value>);

  public:
    SharedMemory()
        : memory_(mmap(nullptr, sizeof(Value), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {}
    ~SharedMemory() {
        if (IsThere()) munmap(memory_, sizeof(Value));
    }
    SharedMemory(const SharedMemory&) = delete;
    SharedMemory& operator=(const SharedMemory&) = delete;

    bool IsThere() const { return memory_ != MAP_FAILED; }
    Value* operator->() const { return static_cast<Value*>(memory_); }
    Value& operator*() const { return *static_cast<Value*>(memory_); }

  private:
    void* memory_;
};
