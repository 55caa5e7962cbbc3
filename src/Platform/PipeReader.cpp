#include "Platform/PipeReader.h"

#include <cerrno>
#include <utility>
#include <vector>

#include <poll.h>
#include <unistd.h>

namespace ostrella {

namespace {

/// As much as a pipe of Linux holds.
constexpr std::size_t chunkSize = 65536;

} // namespace

PipeReader::PipeReader(FileDescriptor readEnd)
    : readEnd_(std::move(readEnd)), wake_(Pipe::make()) {}

bool PipeReader::read(const std::function<void(std::span<const std::byte>)>& take) {
    std::vector<std::byte> buffer(chunkSize);
    while (true) {
        pollfd sources[] = {{readEnd_.get(), POLLIN, 0}, {wake_.readEnd.get(), POLLIN, 0}};
        if (::poll(sources, 2, -1) < 0 && errno != EINTR && errno != EAGAIN) {
            return true;
        }
        if (sources[1].revents != 0) {
            return false;
        }
        if (sources[0].revents == 0) {
            continue;
        }
        const ssize_t count = ::read(readEnd_.get(), buffer.data(), buffer.size());
        if (count > 0) {
            take(std::span(buffer).first(static_cast<std::size_t>(count)));
        } else if (count == 0 || (errno != EINTR && errno != EAGAIN)) {
            return true;
        }
    }
}

void PipeReader::stop() {
    const char anything = 0;
    // The pipe holds far more bytes than there are calls; a full one wakes the reader as well.
    [[maybe_unused]] const ssize_t written = ::write(wake_.writeEnd.get(), &anything, 1);
}

} // namespace ostrella
