#include "ProcessRun.h"

#include "support/Wait.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <utility>

namespace ostrella::test {

std::filesystem::path program(const std::string& name) {
    return std::filesystem::path(OSTRELLA_TEST_PROGRAMS) / name;
}

std::vector<std::string> texts(const LogStore& log) {
    std::vector<std::string> all;
    for (const LogStore::Line& line : log.lines()) {
        all.push_back(line.text);
    }
    return all;
}

std::string waitForLine(const LogStore& log, const std::string& beginning) {
    std::string rest;
    const bool came = waitUntil([&] {
        for (const LogStore::Line& line : log.lines()) {
            if (line.text.starts_with(beginning)) {
                rest = line.text.substr(beginning.size());
                return true;
            }
        }
        return false;
    });
    EXPECT_TRUE(came) << "no line begins with \"" << beginning << "\"";
    return rest;
}

bool exists(pid_t pid) {
    return ::kill(pid, 0) == 0 || errno != ESRCH;
}

ProcessRun::ProcessRun(LogStore& log, TimerService& timers, const std::filesystem::path& executable,
    const std::vector<std::string>& arguments, const CancellationToken& token, Keep keep)
    : worker_([this, &log, &timers, executable, arguments, token, keep = std::move(keep)] {
          try {
              LineForwarder forwarder(log, LogStore::Level::su2, keep);
              outcome_ = ManagedProcess::run(executable, arguments,
                  std::filesystem::temp_directory_path(), forwarder, token, timers);
          } catch (...) {
              error_ = std::current_exception();
          }
          done_ = true;
      }) {}

ProcessRun::~ProcessRun() {
    if (worker_.joinable()) {
        EXPECT_TRUE(waitUntil([this] { return isDone(); })) << "the run does not end";
        worker_.join();
    }
}

ManagedProcess::Outcome ProcessRun::finish() {
    EXPECT_TRUE(waitUntil([this] { return isDone(); })) << "the run does not end";
    worker_.join();
    if (error_) {
        std::rethrow_exception(error_);
    }
    return outcome_;
}

} // namespace ostrella::test
