#include "Platform/FileDescriptor.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace ostrella {

FileDescriptor::FileDescriptor(FileDescriptor&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
    if (this != &other) {
        close();
        descriptor_ = std::exchange(other.descriptor_, -1);
    }
    return *this;
}

FileDescriptor::~FileDescriptor() {
    close();
}

int FileDescriptor::release() {
    return std::exchange(descriptor_, -1);
}

void FileDescriptor::close() {
    if (descriptor_ >= 0) {
        ::close(std::exchange(descriptor_, -1));
    }
}

Pipe Pipe::make() {
    int ends[2];
#ifdef __linux__
    const int result = ::pipe2(ends, O_CLOEXEC);
#else
    const int result = ::pipe(ends);
#endif
    if (result != 0) {
        throw std::system_error(errno, std::generic_category(), "Cannot make a pipe");
    }
    Pipe pipe{FileDescriptor(ends[0]), FileDescriptor(ends[1])};
#ifndef __linux__
    ::fcntl(ends[0], F_SETFD, FD_CLOEXEC);
    ::fcntl(ends[1], F_SETFD, FD_CLOEXEC);
#endif
    return pipe;
}

} // namespace ostrella
