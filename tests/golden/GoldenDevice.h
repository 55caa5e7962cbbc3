#pragma once

#include "Rendering/OffscreenDevice.h"

#include <QString>

namespace ostrella {

/// The device that this run of the program tests, and what its command line said.
struct GoldenDevice {
    static GoldenDevice& current();

    std::unique_ptr<OffscreenDevice> device;
    OffscreenDevice::Backend backend = OffscreenDevice::Backend::openGL;
    QString name;  ///< of the back end, also of its folder of pictures
    QString other; ///< of the other back end
    bool update = false;

    QRhi& rhi() const { return device->rhi(); }
};

} // namespace ostrella
