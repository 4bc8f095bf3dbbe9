#include "install/host/await.h"

#include <unistd.h>

namespace {

constexpr int kMostLooks = 50;
constexpr useconds_t kTenthOfASecond = 100'000;

}  // namespace

void Await(const std::function<bool()>& is_so) {
    for (int look = 0; look < kMostLooks && !is_so(); ++look) usleep(kTenthOfASecond);
}
