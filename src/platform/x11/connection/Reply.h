#pragma once

#include <cstdlib>
#include <memory>

namespace platform::x11 {

struct FreeDeleter {
    void operator()(void* memory) const { std::free(memory); }
};

/// A reply or an event as XCB hands it out, freed with its owner; null after a failed request.
template <class T>
using Reply = std::unique_ptr<T, FreeDeleter>;

} // namespace platform::x11
