#pragma once

#include "Models/NotificationCenter.h"
#include "Models/TriangleMesh.h"

#include <cstdint>
#include <exception>
#include <filesystem>
#include <functional>
#include <string>

namespace ostrella {

class SimulationParameters;

/// The one loader of models. It reads on a background task and hands over on the main thread; the
/// newest request wins, and what an older one still brings is dropped. Main thread only.
class STLImporter {
public:
    /// Gives the model of a file, on a background thread. Throws an error whose text the user
    /// reads.
    using Parse = std::function<TriangleMesh(const std::filesystem::path&)>;
    /// Called on the main thread with the error of the current load.
    using OnFailure = std::function<void(const std::exception_ptr&)>;

    /// `onFailure` is what a load does by default with an error, such as showing it.
    STLImporter(NotificationCenter& notifications, OnFailure onFailure);
    ~STLImporter();
    STLImporter(const STLImporter&) = delete;
    STLImporter& operator=(const STLImporter&) = delete;

    /// Begins a load: takes a new token, shows the file's name as being loaded, and loads with the
    /// default parser and failure handler.
    void open(const std::filesystem::path& url, SimulationParameters& parameters);

    /// The token of a new load; loads with an older one count no longer.
    std::int64_t newToken();

    /// Parses `url` in the background and puts the model into `into`; the count of its open edges
    /// and the notification geometryLoaded follow. An empty `parse` or `onFailure` is the default.
    void load(const std::filesystem::path& url, SimulationParameters& into, std::int64_t token,
        Parse parse = {}, OnFailure onFailure = {});

    static constexpr const char* errorTitle = "Couldn't load STL";

private:
    struct State;
    std::shared_ptr<State> state_;
};

} // namespace ostrella
