#include "run/support/BatchProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <sstream>

namespace ostrella::test {

namespace fs = std::filesystem;

BatchProcess::BatchProcess(fs::path program) : program_(std::move(program)) {
    fs::create_directory(home_);
    fs::create_directory(temporary_);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"TMP", "TEMP", "TEMPDIR", "XDG_CONFIG_HOME", "XDG_CACHE_HOME",
             "XDG_DATA_HOME", "LC_ALL", "LANG", "TERM"}) {
        environment.remove(QString::fromLatin1(name));
    }
    process_.setProcessEnvironment(environment);
    setVariable("HOME", home_.string());
    setVariable("TMPDIR", temporary_.string());
}

BatchProcess::~BatchProcess() {
    if (process_.state() != QProcess::NotRunning) {
        process_.terminate();
        if (!process_.waitForFinished(10000)) {
            process_.kill();
            process_.waitForFinished();
        }
    }
}

void BatchProcess::setVariable(const std::string& name, const std::string& value) {
    QProcessEnvironment environment = process_.processEnvironment();
    environment.insert(QString::fromStdString(name), QString::fromStdString(value));
    process_.setProcessEnvironment(environment);
}

void BatchProcess::removeVariable(const std::string& name) {
    QProcessEnvironment environment = process_.processEnvironment();
    environment.remove(QString::fromStdString(name));
    process_.setProcessEnvironment(environment);
}

void BatchProcess::setWorkingDirectory(const fs::path& directory) {
    process_.setWorkingDirectory(QString::fromStdString(directory.string()));
}

void BatchProcess::setPreparation(std::function<void()> preparation) {
    process_.setChildProcessModifier(std::move(preparation));
}

void BatchProcess::start(const std::vector<std::string>& arguments) {
    QStringList list;
    for (const std::string& argument : arguments) {
        list.append(QString::fromStdString(argument));
    }
    output_.clear();
    errors_.clear();
    process_.setStandardInputFile(QProcess::nullDevice());
    process_.start(QString::fromStdString(program_.string()), list);
    ASSERT_TRUE(process_.waitForStarted()) << process_.errorString().toStdString();
}

void BatchProcess::collect() {
    output_ += process_.readAllStandardOutput().toStdString();
    errors_ += process_.readAllStandardError().toStdString();
}

bool BatchProcess::waitForOutput(const std::string& text) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (output_.find(text) == std::string::npos) {
        if (std::chrono::steady_clock::now() > deadline ||
            process_.state() == QProcess::NotRunning) {
            collect();
            return output_.find(text) != std::string::npos;
        }
        process_.waitForReadyRead(100);
        collect();
    }
    return true;
}

void BatchProcess::signal(int number) const {
    ASSERT_EQ(kill(static_cast<pid_t>(process_.processId()), number), 0);
}

int BatchProcess::finish(std::chrono::seconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (process_.state() != QProcess::NotRunning) {
        process_.waitForFinished(100);
        collect();
        if (std::chrono::steady_clock::now() > deadline) {
            ADD_FAILURE() << "ostrella-batch does not end; so far:\n" << output_ << errors_;
            return -1;
        }
    }
    collect();
    const int status = process_.exitCode();
    return process_.exitStatus() == QProcess::NormalExit ? status : 1000 + status;
}

int BatchProcess::run(const std::vector<std::string>& arguments) {
    start(arguments);
    return finish();
}

std::vector<std::string> BatchProcess::lines() const {
    constexpr std::size_t timeLength = 9; // "12:34:56 "
    std::vector<std::string> result;
    std::istringstream stream(output_);
    for (std::string text; std::getline(stream, text);) {
        result.push_back(text.size() > timeLength ? text.substr(timeLength) : text);
    }
    return result;
}

std::string BatchProcess::line(const std::string& beginning) const {
    for (const std::string& text : lines()) {
        if (text.starts_with(beginning)) {
            return text;
        }
    }
    return {};
}

std::vector<std::string> BatchProcess::contents(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

bool isAlive(const fs::path& file) {
    return kill(static_cast<pid_t>(std::stol(readFile(file))), 0) == 0 || errno != ESRCH;
}

} // namespace ostrella::test
