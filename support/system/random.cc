#include "support/system/random.h"

#include <cstdint>
#include <cstdlib>

int RandomInt(int n) {
    return n < 1 ? 0 : static_cast<int>(arc4random_uniform(static_cast<uint32_t>(n)));
}
