/// Every allocation of the program, its libraries and its modules, so that one can be made to fail.
///
/// This file belongs into the program itself: only there it goes before the operators of a
/// sanitizer's runtime. Aligned allocations stay with the runtime.

#include "platform/allocation.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

void* allocate(std::size_t size) noexcept
{
    if (platform::detail::allocationsCount && platform::detail::allocationFails())
        return nullptr;
    return std::malloc(std::max<std::size_t>(size, 1));
}

void* allocateOrThrow(std::size_t size)
{
    if (void* const memory = allocate(size))
        return memory;
    throw std::bad_alloc();
}

} // namespace

void* operator new(std::size_t size)
{
    return allocateOrThrow(size);
}

void* operator new[](std::size_t size)
{
    return allocateOrThrow(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return allocate(size);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}
