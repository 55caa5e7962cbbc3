#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

struct xcb_connection_t;

namespace ostrella::test {

/// The main window of another process on the X server of `DISPLAY`.
class ForeignWindow {
public:
    /// The one that is shown and belongs to this process; nothing if there is none yet.
    static std::optional<ForeignWindow> ofProcess(std::int64_t process);

    std::uint32_t id() const { return id_; }
    /// As the window system has it; empty if the window has gone.
    std::string title() const;
    bool isShown() const;
    /// Gives it the keyboard.
    void focus() const;
    /// What a click on the cross of its title bar sends.
    void askToClose() const;

private:
    ForeignWindow(std::shared_ptr<xcb_connection_t> connection, std::uint32_t id);

    std::shared_ptr<xcb_connection_t> connection_;
    std::uint32_t id_;
};

} // namespace ostrella::test
