#pragma once

#include "Models/TriangleMesh.h"

#include <glm/vec3.hpp>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace ostrella {

/// Keeps the text of a turned model's extents up to date. It takes a walk over every vertex, so it
/// is made on a background thread, one at a time: of the questions that come meanwhile, only the
/// newest is answered. Main thread only.
class BoundingBoxText {
public:
    /// `changed` is called on the main thread when there is another text, within refresh() or
    /// later, but not after this object has gone.
    explicit BoundingBoxText(std::function<void()> changed);
    ~BoundingBoxText();
    BoundingBoxText(const BoundingBoxText&) = delete;
    BoundingBoxText& operator=(const BoundingBoxText&) = delete;

    /// Asks for the text of `mesh` turned by these degrees about x, y and z; no mesh, no text. The
    /// old text stands until the new one is there, if it is one of the same model.
    void refresh(const std::optional<TriangleMesh>& mesh, const glm::dvec3& rotationDegrees);

    const std::optional<std::string>& text() const;

private:
    struct State;
    std::shared_ptr<State> state_;
};

} // namespace ostrella
