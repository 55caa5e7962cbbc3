#pragma once

#include "support/Wait.h"

#include <QProcess>

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace ostrella::test {

/// One start of ostrella-batch with a home and a temporary directory of its own.
class BatchProcess {
public:
    explicit BatchProcess(std::filesystem::path program);
    ~BatchProcess();

    void setVariable(const std::string& name, const std::string& value);
    void removeVariable(const std::string& name);
    void setWorkingDirectory(const std::filesystem::path& directory);
    /// Performed in the new process ahead of the program, such as setting a limit.
    void setPreparation(std::function<void()> preparation);

    void start(const std::vector<std::string>& arguments);
    /// Waits until the program has written `text`.
    bool waitForOutput(const std::string& text);
    void signal(int number) const;
    /// As the system knows the process.
    qint64 number() const { return process_.processId(); }
    /// Waits for the end and gives the exit status; 1000 and the signal if one killed it.
    int finish(std::chrono::seconds limit = std::chrono::seconds(100));
    int run(const std::vector<std::string>& arguments);

    /// What it wrote so far: the log, and what was wrong with its usage.
    const std::string& output() const { return output_; }
    const std::string& errors() const { return errors_; }
    /// The log's lines without their times.
    std::vector<std::string> lines() const;
    /// The line that begins with `beginning` behind its time, or an empty one.
    std::string line(const std::string& beginning) const;

    const std::filesystem::path& home() const { return home_; }
    const std::filesystem::path& temporary() const { return temporary_; }
    /// Names of what lies in a folder.
    static std::vector<std::string> contents(const std::filesystem::path& folder);

private:
    void collect();

    TemporaryDirectory directory_;
    std::filesystem::path program_;
    std::filesystem::path home_ = directory_.path() / "home";
    std::filesystem::path temporary_ = directory_.path() / "tmp";
    QProcess process_;
    std::string output_;
    std::string errors_;
};

/// True as long as the process that noted its number in `file` exists.
bool isAlive(const std::filesystem::path& file);

} // namespace ostrella::test
