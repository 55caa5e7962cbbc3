#include "Models/Clock.h"

namespace ostrella {

namespace {

class SystemClock final : public Clock {
public:
    Date now() const override { return std::chrono::system_clock::now(); }
};

} // namespace

const Clock& Clock::system() {
    static const SystemClock clock;
    return clock;
}

} // namespace ostrella
