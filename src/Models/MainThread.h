#pragma once

#include "Models/Cancellation.h"

#include <functional>
#include <optional>
#include <type_traits>
#include <utility>

namespace ostrella {

/// The one way from a worker to the main thread, where every observable object lives. One instance
/// is made in main() and stands for the main event loop; when it goes, workers that wait for the
/// main thread are released with CancellationError, so that nobody waits for a loop that has ended.
class MainThread {
public:
    /// Claims the calling thread, which runs (or will run) the event loop, as the main thread.
    MainThread();
    ~MainThread();
    MainThread(const MainThread&) = delete;
    MainThread& operator=(const MainThread&) = delete;

    static bool isCurrent();

    /// Queues `work` for the main thread, in the order of the calls. Dropped if the loop has ended.
    static void post(std::function<void()> work);

    /// Performs `work` on the main thread and returns its result; the calling worker waits. On the
    /// main thread itself it is a plain call. What `work` throws is thrown here. Throws
    /// CancellationError if the main loop has ended.
    template <class Work>
    static auto run(Work&& work) -> std::invoke_result_t<Work&> {
        using Result = std::invoke_result_t<Work&>;
        if constexpr (std::is_void_v<Result>) {
            runAndWait([&work] { work(); });
        } else {
            std::optional<Result> result;
            runAndWait([&work, &result] { result.emplace(work()); });
            return std::move(*result);
        }
    }

private:
    static void runAndWait(const std::function<void()>& work);
};

} // namespace ostrella
