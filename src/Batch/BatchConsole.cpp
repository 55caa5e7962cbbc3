#include "Batch/BatchConsole.h"

#include "Models/LogFormatting.h"

#include <QString>

#include <cstdlib>
#include <string_view>

#include <sys/ioctl.h>
#include <unistd.h>

namespace ostrella {

namespace {

/// The first `columns` characters of a UTF-8 text; every character of ours is one column wide.
std::string cut(const std::string& text, int columns) {
    return QString::fromStdString(text).left(columns).toStdString();
}

bool canBeWrittenOver() {
    const char* const kind = std::getenv("TERM");
    return kind && *kind != '\0' && std::string_view(kind) != "dumb";
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
    : stream_(stream),
      quiet_(quiet),
      isTerminal_(isatty(fileno(stream)) == 1),
      showsProgress_(isTerminal_ && canBeWrittenOver()) {}

void BatchConsole::print(const LogStore::Line& line) {
    if (!(quiet_ && line.level == LogStore::Level::su2)) {
        print(LogFormatting::line(line));
    }
}

void BatchConsole::print(const std::string& text) {
    clearProgress();
    std::fprintf(stream_, "%s\n", shown(text).c_str());
    drawProgress();
    std::fflush(stream_);
}

void BatchConsole::setProgress(const std::string& text) {
    if (!showsProgress_) {
        return;
    }
    clearProgress();
    progress_ = text;
    drawProgress();
    std::fflush(stream_);
}

/// A terminal obeys control characters, and neither a child program nor a file's name is to move
/// its cursor or change its colours. Elsewhere the text stays as it is.
std::string BatchConsole::shown(const std::string& text) const {
    std::string result = text;
    if (isTerminal_) {
        for (char& c : result) {
            const auto code = static_cast<unsigned char>(c);
            if ((code < 0x20 && c != '\t') || code == 0x7F) {
                c = '?';
            }
        }
    }
    return result;
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
