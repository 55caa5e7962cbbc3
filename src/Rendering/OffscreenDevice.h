#pragma once

#include "Rendering/Rhi.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

class QOffscreenSurface;

namespace ostrella {

/// A graphics device without a window, for pictures that nobody sees grow. Needs a QGuiApplication,
/// and lives on its thread.
class OffscreenDevice {
public:
    enum class Backend { openGL, vulkan, metal };

    /// The back ends that this system may have, the preferred one first.
    static std::vector<Backend> candidates();

    /// Nothing where there is no such device, or none that can draw the scene.
    static std::unique_ptr<OffscreenDevice> create(Backend backend);
    /// The first of the candidates that works.
    static std::unique_ptr<OffscreenDevice> create();

    ~OffscreenDevice();
    OffscreenDevice(const OffscreenDevice&) = delete;
    OffscreenDevice& operator=(const OffscreenDevice&) = delete;

    QRhi& rhi() const { return *rhi_; }
    /// Name of the back end and of the device, as the driver tells it.
    std::string description() const;

private:
    OffscreenDevice();

    std::unique_ptr<QOffscreenSurface> surface_;
    std::unique_ptr<QRhi> rhi_;
};

} // namespace ostrella
