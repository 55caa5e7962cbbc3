#pragma once

#include "Platform/FileDescriptor.h"

#include <cstddef>
#include <functional>
#include <span>

namespace ostrella {

/// Reads a pipe until its end, or until somebody says stop: the end may never come, since any
/// descendant of a child can hold the pipe open.
class PipeReader {
public:
    /// Throws std::system_error when the process has no descriptors left.
    explicit PipeReader(FileDescriptor readEnd);

    /// Hands over what arrives, chunk by chunk, on the calling thread. True at the end of the pipe,
    /// false if it was stopped.
    bool read(const std::function<void(std::span<const std::byte>)>& take);

    /// Ends read(), now or when it is called. Safe on every thread.
    void stop();

private:
    FileDescriptor readEnd_;
    Pipe wake_;
};

} // namespace ostrella
