#include "headless/ole/ComObject.h"

namespace {
std::atomic<long> g_liveComObjects{0};
}

namespace headless {

long LiveComObjects() noexcept { return g_liveComObjects.load(); }

namespace detail {
void CountComObject(long delta) noexcept { g_liveComObjects.fetch_add(delta); }
}  // namespace detail

}  // namespace headless
