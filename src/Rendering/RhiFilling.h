#pragma once

#include "Rendering/Rhi.h"

#include <cstddef>
#include <functional>
#include <limits>
#include <memory>
#include <span>

namespace ostrella {

/// How many bytes may go to a device with one frame, so that a large scene does not keep the
/// thread that draws: it comes with several.
class UploadBudget {
public:
    explicit UploadBudget(std::size_t bytes) : whole_(bytes), left_(bytes) {}
    /// All at once.
    static UploadBudget unlimited() {
        return UploadBudget(std::numeric_limits<std::size_t>::max());
    }

    std::size_t left() const { return left_; }
    void spend(std::size_t bytes) { left_ -= bytes < left_ ? bytes : left_; }

    /// Whether room for so many bytes may be made on the device. That takes time as well: drivers
    /// clear what they give away. Room for more than a whole budget is all that a frame makes.
    bool admits(std::size_t bytes) const { return bytes <= whole_ || left_ == whole_; }
    void spendOnRoom(std::size_t bytes) {
        if (bytes > whole_)
            left_ = 0;
    }

private:
    std::size_t whole_;
    std::size_t left_;
};

/// A buffer of a device, and how far its contents have got there.
class RhiFilling {
public:
    /// Gives `size` bytes of the contents from `offset` on, both whole numbers of `step`, which are
    /// needed until it is called again.
    using Source = std::function<std::span<const std::byte>(std::size_t offset, std::size_t size)>;
    /// Contents are asked for in pieces of whole triangles or quads, as edges or corners.
    static constexpr std::size_t step = 24;

    RhiFilling() = default;
    RhiFilling(QRhiBuffer::UsageFlags usage, std::size_t size) : usage_(usage), size_(size) {}

    /// Fills on as far as the budget reaches; true once all is there. Throws RhiError where the
    /// device has no room.
    bool advance(
        QRhi& rhi, const Source& source, QRhiResourceUpdateBatch& updates, UploadBudget& budget);

    /// There is something to fill.
    bool hasBegun() const { return size_ > 0; }
    bool isWhole() const { return size_ > 0 && filled_ == size_; }
    /// Bytes that it holds once it is whole.
    std::size_t size() const { return size_; }
    /// Null until it is whole.
    QRhiBuffer* buffer() const { return isWhole() ? buffer_.get() : nullptr; }

private:
    void create(QRhi& rhi);

    QRhiBuffer::UsageFlags usage_;
    std::size_t size_ = 0;
    std::size_t filled_ = 0;
    std::unique_ptr<QRhiBuffer> buffer_;
};

} // namespace ostrella
