#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

struct xcb_connection_t;

namespace ostrella::test {

/// A window of another process on the X server of `DISPLAY`.
class ForeignWindow {
public:
    /// One that is shown and belongs to this process, with exactly this title unless that is empty;
    /// nothing if there is none yet.
    static std::optional<ForeignWindow> ofProcess(
        std::int64_t process, const std::string& title = {});

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
