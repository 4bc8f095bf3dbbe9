#include "support/system/random.h"

#include <cstdint>
#include <cstdlib>
#include <utility>

int RandomInt(int n) {
    return n < 1 ? 0 : static_cast<int>(arc4random_uniform(static_cast<uint32_t>(n)));
}

SString RandomBytes(size_t count) {
    std::string bytes(count, 0);
    arc4random_buf(bytes.data(), count);
    return SString(std::move(bytes));
}
