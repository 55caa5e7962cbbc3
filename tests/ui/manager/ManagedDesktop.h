#pragma once

#include "Platform/desktop/DesktopBench.h"

#include <QRect>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct xcb_connection_t;

namespace ostrella::test {

/// A window manager, openbox as it comes, at work on the X server of `DISPLAY`, and what it knows
/// of the windows. It goes with the object.
class ManagedDesktop {
public:
    ManagedDesktop();
    ~ManagedDesktop();

    /// Windows of a process, from the back to the front.
    std::vector<std::uint32_t> windowsOf(std::int64_t process) const;
    std::uint32_t activeWindow() const;
    std::uint32_t frontWindow() const;
    /// Until the window is the active one and nothing lies before it.
    bool waitForFront(std::uint32_t window) const;
    /// Where the window is on the screen, without and with its frame.
    QRect content(std::uint32_t window) const;
    QRect frame(std::uint32_t window) const;
    /// The part of the screen that is there for windows.
    QRect workArea() const;
    /// Such as "_NET_WM_STATE_HIDDEN".
    bool hasState(std::uint32_t window, std::string_view state) const;

    // What the user asks the manager for.
    void bringToFront(std::uint32_t window) const;
    void minimise(std::uint32_t window) const;
    void maximise(std::uint32_t window) const;
    void close(std::uint32_t window) const;

private:
    std::uint32_t atom(std::string_view name) const;
    std::vector<std::uint32_t> numbers(std::uint32_t window, std::string_view property) const;
    void tell(
        std::uint32_t window, std::string_view message, std::vector<std::uint32_t> values) const;
    bool isManaged() const;
    bool takesWindows() const;

    TemporaryDirectory directory_;
    EnvironmentVariable configuration_;
    std::shared_ptr<xcb_connection_t> connection_;
    std::uint32_t root_ = 0;
    std::unique_ptr<TalkingProgram> manager_;
};

} // namespace ostrella::test
