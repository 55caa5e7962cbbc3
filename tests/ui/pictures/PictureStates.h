#pragma once

#include "ui/pictures/PictureStage.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace ostrella::test {

/// A state of the window, and the way to it.
struct PictureState {
    std::string name;
    std::function<void(PictureStage&)> reach;
    /// Where it is about a size of its own, whatever size the others have.
    std::optional<QSize> size = {};
    double textScale = 1;
};

const std::vector<PictureState>& pictureStates();

} // namespace ostrella::test
