#include "support/Wait.h"

#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>

#include <atomic>
#include <exception>
#include <fstream>
#include <sstream>
#include <thread>

#include <stdlib.h>

namespace ostrella::test {

namespace fs = std::filesystem;

bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        QEventLoop loop;
        QTimer::singleShot(1, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return true;
}

void onWorker(const std::function<void()>& work) {
    std::atomic<bool> done = false;
    std::exception_ptr error;
    std::thread worker([&] {
        try {
            work();
        } catch (...) {
            error = std::current_exception();
        }
        done = true;
    });
    const bool ended = waitUntil([&] { return done.load(); }, std::chrono::seconds(120));
    EXPECT_TRUE(ended) << "the worker does not end";
    worker.join();
    if (error) {
        std::rethrow_exception(error);
    }
}

TemporaryDirectory::TemporaryDirectory() {
    std::string pattern = (fs::temp_directory_path() / "ostrella-test-XXXXXX").string();
    if (!mkdtemp(pattern.data())) {
        throw std::runtime_error("no temporary directory for the test");
    }
    path_ = fs::canonical(pattern);
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code error;
    fs::remove_all(path_, error);
}

void writeFile(const fs::path& file, const std::string& text) {
    fs::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream << text;
    stream.close();
    ASSERT_TRUE(stream) << "cannot write " << file;
}

std::string readFile(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    EXPECT_TRUE(stream) << "cannot read " << file;
    std::ostringstream text;
    text << stream.rdbuf();
    return std::move(text).str();
}

} // namespace ostrella::test
