#include "Rendering/RhiFilling.h"

#include "Rendering/RhiError.h"

#if QT_CONFIG(opengl)
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#endif

#include <fmt/format.h>

#include <algorithm>

namespace ostrella {

namespace {

/// Puts bytes straight into a large buffer that nothing draws with yet, where the device takes
/// them: the interface would keep a copy until the frame is drawn, and memory for that costs more
/// than the copy itself. False where it has to.
bool fillAtOnce(
    QRhi& rhi, QRhiBuffer& buffer, std::size_t offset, std::span<const std::byte> bytes) {
#if QT_CONFIG(opengl)
    constexpr std::size_t many = 1 << 20;
    if (static_cast<std::size_t>(buffer.size()) < many || rhi.backend() != QRhi::OpenGLES2)
        return false;
    const void* const name = buffer.nativeBuffer().objects[0];
    if (name == nullptr || !rhi.makeThreadLocalNativeContextCurrent())
        return false;
    QOpenGLFunctions* const gl = QOpenGLContext::currentContext()->functions();
    // A place of the context's that the interface does not use, so that all else stays as it was.
    constexpr GLenum copyWriteBuffer = 0x8F36;
    gl->glBindBuffer(copyWriteBuffer, *static_cast<const GLuint*>(name));
    gl->glBufferSubData(copyWriteBuffer, static_cast<GLintptr>(offset),
        static_cast<GLsizeiptr>(bytes.size()), bytes.data());
    gl->glBindBuffer(copyWriteBuffer, 0);
    return true;
#else
    static_cast<void>(rhi);
    static_cast<void>(buffer);
    static_cast<void>(offset);
    static_cast<void>(bytes);
    return false;
#endif
}

} // namespace

bool RhiFilling::advance(
    QRhi& rhi, const Source& source, QRhiResourceUpdateBatch& updates, UploadBudget& budget) {
    if (!buffer_) {
        if (!budget.admits(size_))
            return false;
        create(rhi);
        budget.spendOnRoom(size_);
    }
    const std::size_t missing = size_ - filled_;
    const std::size_t piece = missing <= budget.left() ? missing : budget.left() / step * step;
    if (piece > 0) {
        const std::span<const std::byte> bytes = source(filled_, piece);
        if (!fillAtOnce(rhi, *buffer_, filled_, bytes))
            updates.uploadStaticBuffer(buffer_.get(), static_cast<quint32>(filled_),
                static_cast<quint32>(piece), bytes.data());
        filled_ += piece;
        budget.spend(piece);
    }
    return isWhole();
}

void RhiFilling::create(QRhi& rhi) {
    // The interface counts bytes in ints here and there.
    const bool fits = size_ <= static_cast<std::size_t>(std::numeric_limits<int>::max());
    std::unique_ptr<QRhiBuffer> buffer;
    if (fits)
        buffer.reset(rhi.newBuffer(QRhiBuffer::Immutable, usage_, static_cast<quint32>(size_)));
    if (!buffer || !buffer->create())
        throw RhiError(
            fmt::format("the graphics device has no room for a buffer of {} bytes", size_));
    buffer_ = std::move(buffer);
}

} // namespace ostrella
