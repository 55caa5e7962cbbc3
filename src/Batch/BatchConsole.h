#pragma once

#include "Models/LogStore.h"

#include <cstdio>
#include <string>

namespace ostrella {

/// The terminal of a batch run: log lines as they come and, where a person watches, one progress
/// line beneath them that is written over and over.
class BatchConsole {
public:
    /// Writes to `stream`; the progress line is shown only if that is a terminal that can be
    /// written over.
    explicit BatchConsole(std::FILE* stream, bool quiet);

    bool showsProgress() const { return showsProgress_; }
    void print(const LogStore::Line& line);
    void print(const std::string& text);
    /// Shows the progress line, cut to the terminal's width; an empty one takes it away.
    void setProgress(const std::string& text);

private:
    std::string shown(const std::string& text) const;
    void clearProgress();
    void drawProgress();

    std::FILE* stream_;
    bool quiet_;
    bool isTerminal_;
    bool showsProgress_;
    std::string progress_;
};

} // namespace ostrella
