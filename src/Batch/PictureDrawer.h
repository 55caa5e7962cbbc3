#pragma once

#include "Batch/PictureScene.h"
#include "Platform/ChildProcess.h"
#include "Platform/FileDescriptor.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace ostrella {

/// Draws a scene in another program, ostrella-picture of the tools directory. A display that goes
/// away or a driver that falls over takes that program with it and not a night's run, and a run
/// without a picture loads nothing of it.
class PictureDrawer {
public:
    explicit PictureDrawer(std::filesystem::path program) : program_(std::move(program)) {}
    /// Ends the program, and waits for that.
    ~PictureDrawer();
    PictureDrawer(const PictureDrawer&) = delete;
    PictureDrawer& operator=(const PictureDrawer&) = delete;

    /// Starts the program, which looks for a device while something else is done. Nothing if it was
    /// started already.
    void start();

    struct Outcome {
        /// The PNG file, or nothing where there is no picture.
        std::optional<std::string> png;
        /// Why not, as a sentence's end.
        std::string failure;
        /// What drew, as far as it came to that.
        std::string device;
    };
    /// Draws one picture, the only one; `info` takes the lines that are worth logging. Starts the
    /// program if that has not been done. For a worker thread.
    Outcome draw(const PictureScene& scene, const std::function<void(const std::string&)>& info);

private:
    std::filesystem::path program_;
    ChildProcess process_;
    FileDescriptor socket_;
    std::optional<std::string> startFailure_;
};

} // namespace ostrella
