// How the window asks for its place before the others.

#include "ManagedDesktop.h"

#include "ui/support/AppUnderTest.h"

#include <QRasterWindow>

#include <cstdlib>
#include <memory>
#include <string_view>

#include <xcb/xcb.h>

namespace ostrella::test {
namespace {

/// What is said on the X server's root window, to the window manager among others.
class RootWindow {
public:
    RootWindow() {
        const std::uint32_t mask =
            XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(connection_.get(), root_, XCB_CW_EVENT_MASK, &mask);
    }

    /// The server's time in milliseconds. What has been said before is not told any more.
    std::optional<xcb_timestamp_t> now() {
        const xcb_atom_t mark = atom("TEST_TIME");
        constexpr std::uint8_t bits = 8;
        xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, root_, mark, XCB_ATOM_STRING,
            bits, 0, nullptr);
        const auto* event = waitFor<xcb_property_notify_event_t>(
            XCB_PROPERTY_NOTIFY, [&](const auto& property) { return property.atom == mark; });
        return event ? std::optional(event->time) : std::nullopt;
    }

    /// Waits for a message about a window.
    std::optional<xcb_client_message_event_t> message(std::string_view name, xcb_window_t window) {
        const xcb_atom_t type = atom(name);
        const auto* event = waitFor<xcb_client_message_event_t>(XCB_CLIENT_MESSAGE,
            [&](const auto& message) { return message.type == type && message.window == window; });
        return event ? std::optional(*event) : std::nullopt;
    }

private:
    xcb_atom_t atom(std::string_view name) const {
        xcb_connection_t* c = connection_.get();
        const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
            xcb_intern_atom_reply(c,
                xcb_intern_atom(c, 0, static_cast<std::uint16_t>(name.size()), name.data()),
                nullptr),
            &std::free);
        return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    }

    /// Null if none that fits comes; else until the next call.
    template <class Event, class Fits>
    const Event* waitFor(std::uint8_t kind, const Fits& fits) {
        constexpr int kindOf = 0x7F; // the bit above it marks what another client has sent
        xcb_flush(connection_.get());
        const bool came = waitUntil([&] {
            while (true) {
                event_.reset(xcb_poll_for_event(connection_.get()));
                if (!event_)
                    return false;
                if ((event_->response_type & kindOf) == kind &&
                    fits(*reinterpret_cast<const Event*>(event_.get())))
                    return true;
            }
        });
        return came ? reinterpret_cast<const Event*>(event_.get()) : nullptr;
    }

    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection_{
        xcb_connect(nullptr, nullptr), &xcb_disconnect};
    xcb_window_t root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data->root;
    std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> event_{nullptr, &std::free};
};

/// The manager is there before the window, and goes after it.
struct WithManager {
    ManagedDesktop desktop;
};

class Front : protected WithManager, public AppUnderTest {
protected:
    std::uint32_t id() const { return static_cast<std::uint32_t>(window->window().winId()); }
};

TEST_F(Front, isAskedForAsByTheUserAndAtThisMoment) {
    ASSERT_TRUE(desktop.waitForFront(id()));
    QRasterWindow another;
    another.setGeometry(100, 100, 600, 400);
    another.show();
    desktop.bringToFront(static_cast<std::uint32_t>(another.winId()));
    ASSERT_TRUE(desktop.waitForFront(static_cast<std::uint32_t>(another.winId())));

    RootWindow root;
    const auto before = root.now();
    ASSERT_TRUE(before);
    window->raise();
    const auto request = root.message("_NET_ACTIVE_WINDOW", id());
    ASSERT_TRUE(request);
    constexpr std::uint32_t theUser = 2; // 1 is a program
    EXPECT_EQ(request->data.data32[0], theUser);
    EXPECT_GE(request->data.data32[1], *before);
    EXPECT_TRUE(desktop.waitForFront(id()));
}

} // namespace
} // namespace ostrella::test
