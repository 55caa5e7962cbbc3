#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>

namespace ostrella::test {

/// Serves the main thread's events until `condition` holds; false if it does not within `limit`.
bool waitUntil(const std::function<bool()>& condition,
    std::chrono::milliseconds limit = std::chrono::seconds(20));

/// Performs `work` on a worker thread while the main thread serves its events, and waits for its
/// end. What `work` throws is thrown here.
void onWorker(const std::function<void()>& work);

/// A fresh directory that goes with the object.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

/// Writes `text` to a file, making the folders that lead to it.
void writeFile(const std::filesystem::path& file, const std::string& text);
/// The whole of a file; a failed expectation if it cannot be read.
std::string readFile(const std::filesystem::path& file);

} // namespace ostrella::test
