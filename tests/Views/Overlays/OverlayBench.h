#pragma once

#include "support/ManualClock.h"
#include "support/ManualTimers.h"
#include "support/ViewBench.h"

#include <gtest/gtest.h>

#include <QVariantList>
#include <QVariantMap>

#include <string>
#include <vector>

namespace ostrella::test {

/// The shared objects and what the overlays are made of besides.
class OverlayBench : public testing::Test, protected ViewBench {
protected:
    /// A result with what a run can leave behind: pressures from -1.5 to 1, and two streamlines
    /// with speeds from 10 to 30 m/s.
    static SimulationResult result(bool withField = true, bool withStreamlines = true) {
        SimulationResult result;
        if (withField) {
            result.surfaceField = SurfaceField({Vec3(0), Vec3(1)}, {-1.5F, 1.0F},
                "Pressure_Coefficient", {0U, 1U}, SurfaceField::Primitive::line);
        }
        if (withStreamlines) {
            Streamlines lines;
            lines.interleavedVertices = std::vector<float>(5 * 4, 10.0F);
            // Vertices 0, 1 and 2 are one line, 3 and 4 another.
            lines.indices = std::vector<std::uint32_t>{0, 1, 1, 2, 3, 4};
            lines.vertexCount = 5;
            lines.indexCount = 6;
            lines.magnitudeMin = 10;
            lines.magnitudeMax = 30;
            result.streamlines = lines;
        }
        return result;
    }

    static std::string string(const QVariant& map, const char* key) {
        return map.toMap().value(QString::fromLatin1(key)).toString().toStdString();
    }

    /// One entry of each map of a list.
    static std::vector<std::string> column(const QVariantList& list, const char* key) {
        std::vector<std::string> texts;
        for (const QVariant& map : list) {
            texts.push_back(string(map, key));
        }
        return texts;
    }

    MemoryPreferences preferences;
    ManualClock clock;
    ManualTimers timers;
};

using Texts = std::vector<std::string>;

} // namespace ostrella::test
