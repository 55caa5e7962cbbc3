#include "Batch/BatchConsole.h"

#include "Models/LogFormatting.h"

#include <QString>

#include <sys/ioctl.h>
#include <unistd.h>

namespace ostrella {

namespace {

/// The first `columns` characters of a UTF-8 text; every character of ours is one column wide.
std::string cut(const std::string& text, int columns) {
    return QString::fromStdString(text).left(columns).toStdString();
}

int width(std::FILE* stream) {
    winsize size{};
    if (ioctl(fileno(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
        return size.ws_col;
    }
    return 80;
}

} // namespace

BatchConsole::BatchConsole(std::FILE* stream, bool quiet)
    : stream_(stream), quiet_(quiet), isTerminal_(isatty(fileno(stream)) == 1) {}

void BatchConsole::print(const LogStore::Line& line) {
    if (!(quiet_ && line.level == LogStore::Level::su2)) {
        print(LogFormatting::line(line));
    }
}

void BatchConsole::print(const std::string& text) {
    clearProgress();
    std::fprintf(stream_, "%s\n", text.c_str());
    drawProgress();
    std::fflush(stream_);
}

void BatchConsole::setProgress(const std::string& text) {
    if (!isTerminal_) {
        return;
    }
    clearProgress();
    progress_ = text;
    drawProgress();
    std::fflush(stream_);
}

void BatchConsole::clearProgress() {
    if (!progress_.empty()) {
        std::fputs("\r\x1b[K", stream_);
    }
}

void BatchConsole::drawProgress() {
    if (!progress_.empty()) {
        std::fputs(cut(progress_, width(stream_) - 1).c_str(), stream_);
    }
}

} // namespace ostrella
