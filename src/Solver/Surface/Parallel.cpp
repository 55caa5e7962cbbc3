#include "Solver/Surface/Parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <system_error>
#include <thread>
#include <vector>

namespace ostrella {

namespace {

/// Short enough for a cancel to be seen at once, long enough to cost nothing.
constexpr std::size_t blockSize = 1024;
constexpr unsigned mostThreads = 8;

} // namespace

void inParallel(std::size_t count, const CancellationToken& token,
    const std::function<void(std::size_t begin, std::size_t end)>& work) {
    std::atomic<std::size_t> taken = 0;
    std::atomic<bool> hasFailed = false;
    std::exception_ptr failure;
    const auto loop = [&] {
        try {
            while (!token.isCancelled() && !hasFailed) {
                const std::size_t begin = taken.fetch_add(blockSize);
                if (begin >= count) {
                    return;
                }
                work(begin, std::min(count, begin + blockSize));
            }
        } catch (...) {
            if (!hasFailed.exchange(true)) {
                failure = std::current_exception();
            }
        }
    };
    const std::size_t blocks = (count + blockSize - 1) / blockSize;
    const std::size_t threads = std::min<std::size_t>(
        blocks, std::clamp(std::thread::hardware_concurrency(), 1U, mostThreads));
    std::vector<std::jthread> helpers;
    for (std::size_t i = 1; i < threads; ++i) {
        try {
            helpers.emplace_back(loop);
        } catch (const std::system_error&) {
            break; // no more threads: those that there are do it all
        }
    }
    loop();
    helpers.clear();
    if (failure) {
        std::rethrow_exception(failure);
    }
    token.throwIfCancelled();
}

} // namespace ostrella
