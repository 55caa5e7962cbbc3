#pragma once

namespace ostrella {

/// Owns one descriptor of an open file or pipe and closes it in the end.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept;
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor();

    /// -1 for none.
    int get() const { return descriptor_; }
    /// Gives the descriptor away unclosed.
    int release();
    void close();

private:
    int descriptor_ = -1;
};

/// The two ends of a pipe that no child inherits by itself.
struct Pipe {
    FileDescriptor readEnd;
    FileDescriptor writeEnd;

    /// Throws std::system_error when the process has no descriptors left.
    static Pipe make();
};

} // namespace ostrella
