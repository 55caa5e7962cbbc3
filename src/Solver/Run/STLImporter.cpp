#include "Solver/Run/STLImporter.h"

#include "Models/MainThread.h"
#include "Models/SimulationParameters.h"
#include "Solver/Geometry/ModelFile.h"
#include "Solver/Geometry/Welding.h"
#include "Solver/Tools/Background.h"

#include <QPointer>

#include <utility>
#include <variant>

namespace ostrella {

namespace fs = std::filesystem;

/// Shared with the background tasks, so that a load may outlive its importer. Everything but the
/// tasks' own data is touched on the main thread only.
struct STLImporter::State {
    NotificationCenter* notifications;
    OnFailure onFailure;
    std::int64_t token = 0;
};

STLImporter::STLImporter(NotificationCenter& notifications, OnFailure onFailure)
    : state_(std::make_shared<State>(State{&notifications, std::move(onFailure), 0})) {}

STLImporter::~STLImporter() {
    // Whatever is still on its way belongs to no load of anybody's.
    ++state_->token;
}

std::int64_t STLImporter::newToken() {
    return ++state_->token;
}

void STLImporter::open(const fs::path& url, SimulationParameters& parameters) {
    const std::int64_t token = newToken();
    parameters.setLoadingFileName(url.filename().string());
    load(url, parameters, token);
}

void STLImporter::load(const fs::path& url, SimulationParameters& into, std::int64_t token,
    Parse parse, OnFailure onFailure) {
    if (!parse) {
        parse = [](const fs::path& file) { return loadModelFile(file); };
    }
    if (!onFailure) {
        onFailure = state_->onFailure;
    }

    const auto finish = [state = state_, token](const QPointer<SimulationParameters>& parameters,
                            std::int64_t openEdges) {
        if (state->token != token || !parameters) {
            return;
        }
        parameters->setOpenEdgeCount(openEdges);
        state->notifications->post(Notifications::geometryLoaded, parameters.data());
    };

    const auto accept = [state = state_, token, url, onFailure, finish](
                            const QPointer<SimulationParameters>& parameters,
                            const std::variant<TriangleMesh, std::exception_ptr>& result) {
        if (state->token != token || !parameters) {
            return;
        }
        parameters->setLoadingFileName(std::nullopt);
        if (const auto* error = std::get_if<std::exception_ptr>(&result)) {
            if (onFailure) {
                onFailure(*error);
            }
            return;
        }
        const TriangleMesh& mesh = std::get<TriangleMesh>(result);
        parameters->setSTLURL(url);
        parameters->setMesh(mesh);
        Background::run(
            [mesh, parameters, finish] {
                const auto openEdges = static_cast<std::int64_t>(openEdgeCount(mesh));
                MainThread::post(
                    [parameters, openEdges, finish] { finish(parameters, openEdges); });
            },
            Background::Priority::userInitiated);
    };

    Background::run(
        [url, parse = std::move(parse), accept, parameters = QPointer(&into)] {
            std::variant<TriangleMesh, std::exception_ptr> result = std::exception_ptr();
            try {
                result = parse(url);
            } catch (...) {
                result = std::current_exception();
            }
            MainThread::post(
                [parameters, accept, result = std::move(result)] { accept(parameters, result); });
        },
        Background::Priority::userInitiated);
}

} // namespace ostrella
