#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <sys/types.h>

namespace ostrella::test {

/// A program that believes that a person sits before it: it runs on a pseudo-terminal.
class TerminalRun {
public:
    TerminalRun(const std::filesystem::path& program, const std::vector<std::string>& arguments,
        const std::filesystem::path& temporaryDirectory, unsigned short columns);
    ~TerminalRun();
    TerminalRun(const TerminalRun&) = delete;
    TerminalRun& operator=(const TerminalRun&) = delete;

    /// Reads on until the program has written `text`; false if it has not within a minute or ends.
    bool waitForOutput(const std::string& text);
    /// What the person types.
    void type(const std::string& keys) const;
    /// Reads to the end and gives the exit status, or -1.
    int finish();

    const std::string& output() const { return output_; }

private:
    bool readMore();

    int terminal_ = -1;
    pid_t pid_ = -1;
    std::string output_;
};

} // namespace ostrella::test
