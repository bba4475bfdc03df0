// The library is built without exceptions and links no C++ runtime. What the standard library's headers still
// ask of one is here: memory from the C library, and an end of the process where an exception would have been
// thrown (memory exhausted, or a container used against its contract).
#include <cstdlib>
#include <new>

namespace {

void* allocate_or_abort(std::size_t size) {
    void* memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) std::abort();
    return memory;
}

}  // namespace

void* operator new(std::size_t size) { return allocate_or_abort(size); }
void* operator new[](std::size_t size) { return allocate_or_abort(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

// Declared by the headers of one standard library alone; the other's end the process by themselves.
#ifdef __GLIBCXX__
namespace std {

[[noreturn]] void __throw_length_error(const char* /*what*/) { std::abort(); }
[[noreturn]] void __throw_logic_error(const char* /*what*/) { std::abort(); }
[[noreturn]] void __throw_out_of_range_fmt(const char* /*format*/, ...) { std::abort(); }
[[noreturn]] void __throw_bad_alloc() { std::abort(); }
[[noreturn]] void __throw_bad_array_new_length() { std::abort(); }

}  // namespace std
#endif
