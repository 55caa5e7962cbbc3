#pragma once

#include "Platform/ChildProcess.h"
#include "Platform/FileDescriptor.h"

#include <chrono>
#include <memory>
#include <string>

namespace ostrella {

/// An X server of one's own that shows nothing, for drawing where nobody looks: Xvfb, found on the
/// search path. It ends with this object, and leaves no file behind.
class VirtualDisplay {
public:
    /// Starts one; nothing where there is no such program, or it does not come up.
    static std::unique_ptr<VirtualDisplay> start();
    /// Whoever draws there must have let go of it.
    ~VirtualDisplay();
    VirtualDisplay(const VirtualDisplay&) = delete;
    VirtualDisplay& operator=(const VirtualDisplay&) = delete;

    /// As the environment names displays, such as ":99".
    const std::string& name() const { return name_; }

    /// True where the environment names an X server that takes a connection, which is held until
    /// the next call or the end of the process: some servers end with their last client. One that
    /// hangs, or is at the other end of a line that is dead, is given up after `limit`.
    static bool anotherAnswers(std::chrono::milliseconds limit = std::chrono::seconds(10));

private:
    VirtualDisplay() = default;

    ChildProcess server_;
    FileDescriptor output_; ///< where the server complains, to nobody
    std::string name_;
};

} // namespace ostrella
