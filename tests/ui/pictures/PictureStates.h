#pragma once

#include "ui/pictures/PictureStage.h"

#include <functional>
#include <string>
#include <vector>

namespace ostrella::test {

/// A state of the window, and the way to it.
struct PictureState {
    std::string name;
    std::function<void(PictureStage&)> reach;
};

const std::vector<PictureState>& pictureStates();

} // namespace ostrella::test
