#include "Views/Format/BoundingBoxText.h"

#include "Models/MainThread.h"
#include "Solver/Tools/Background.h"
#include "Views/Format/SidebarFormat.h"

#include <utility>

namespace ostrella {

namespace {

/// What a text belongs to.
struct Question {
    TriangleMesh mesh;
    glm::dvec3 rotation{0.0};

    bool isAbout(const TriangleMesh& other) const {
        return mesh.positions().sharesBufferWith(other.positions());
    }
};

} // namespace

/// Shared with the background chore, which may outlive the object. Touched on the main thread only.
struct BoundingBoxText::State : std::enable_shared_from_this<State> {
    std::function<void()> changed;
    std::optional<Question> asked;
    std::optional<std::string> text;
    bool isWorking = false;

    void setText(std::optional<std::string> value) {
        if (text != value) {
            text = std::move(value);
            if (changed) {
                changed();
            }
        }
    }

    void work() {
        isWorking = true;
        Background::run(
            [weak = weak_from_this(), question = *asked] {
                std::string made = SidebarFormat::boundingBoxText(question.mesh, question.rotation);
                MainThread::post([weak, question, made = std::move(made)] {
                    if (const auto state = weak.lock()) {
                        state->accept(question, made);
                    }
                });
            },
            Background::Priority::userInitiated);
    }

    void accept(const Question& question, const std::string& made) {
        isWorking = false;
        if (!asked) {
            return;
        }
        const bool isNewest = asked->isAbout(question.mesh) && asked->rotation == question.rotation;
        if (asked->isAbout(question.mesh) && asked->rotation != glm::dvec3(0.0)) {
            // While the model keeps turning, a text a moment old is better than one that stands.
            setText(made);
        }
        if (!isNewest && asked && asked->rotation != glm::dvec3(0.0) && !isWorking) {
            work();
        }
    }
};

BoundingBoxText::BoundingBoxText(std::function<void()> changed)
    : state_(std::make_shared<State>()) {
    state_->changed = std::move(changed);
}

BoundingBoxText::~BoundingBoxText() {
    state_->changed = nullptr;
    state_->asked.reset();
}

void BoundingBoxText::refresh(
    const std::optional<TriangleMesh>& mesh, const glm::dvec3& rotationDegrees) {
    State& state = *state_;
    if (!mesh) {
        state.asked.reset();
        state.setText(std::nullopt);
        return;
    }
    if (state.asked && state.asked->isAbout(*mesh) && state.asked->rotation == rotationDegrees) {
        return;
    }
    const bool isNewModel = !state.asked || !state.asked->isAbout(*mesh);
    state.asked = Question{*mesh, rotationDegrees};
    if (rotationDegrees == glm::dvec3(0.0)) {
        // The stored box: nothing to walk over.
        state.setText(SidebarFormat::boundingBoxText(*mesh, rotationDegrees));
        return;
    }
    if (isNewModel) {
        state.setText(std::nullopt);
    }
    if (!state.isWorking) {
        state.work();
    }
}

const std::optional<std::string>& BoundingBoxText::text() const {
    return state_->text;
}

} // namespace ostrella
