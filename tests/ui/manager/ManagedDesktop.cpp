#include "ManagedDesktop.h"

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <stdexcept>

namespace ostrella::test {

namespace {

template <class T>
std::unique_ptr<T, void (*)(void*)> owned(T* reply) {
    return {reply, std::free};
}

/// The user, as opposed to a program, asks for it.
constexpr std::uint32_t fromTheUser = 2;

} // namespace

ManagedDesktop::ManagedDesktop()
    : configuration_("XDG_CONFIG_HOME", QByteArray::fromStdString(directory_.path().string())),
      connection_(xcb_connect(nullptr, nullptr), xcb_disconnect) {
    if (xcb_connection_has_error(connection_.get()) != 0) {
        throw std::runtime_error("there is no X server");
    }
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data->root;
    manager_ = std::make_unique<TalkingProgram>(
        QStringLiteral("openbox"), QStringList{QStringLiteral("--sm-disable")});
    EXPECT_TRUE(waitUntil([this] { return isManaged(); })) << "the window manager does not start";
    EXPECT_TRUE(waitUntil([this] { return takesWindows(); }))
        << "the window manager is not at work";
}

ManagedDesktop::~ManagedDesktop() {
    // It leaves the screen as it was.
    manager_->process().terminate();
    manager_->process().waitForFinished();
}

std::uint32_t ManagedDesktop::atom(std::string_view name) const {
    xcb_connection_t* c = connection_.get();
    const auto reply = owned(xcb_intern_atom_reply(
        c, xcb_intern_atom(c, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr));
    if (!reply) {
        throw std::runtime_error("the X server does not answer");
    }
    return reply->atom;
}

std::vector<std::uint32_t> ManagedDesktop::numbers(
    std::uint32_t window, std::string_view property) const {
    xcb_connection_t* c = connection_.get();
    constexpr std::uint32_t mostNumbers = 1000;
    const auto reply = owned(xcb_get_property_reply(c,
        xcb_get_property(c, 0, window, atom(property), XCB_GET_PROPERTY_TYPE_ANY, 0, mostNumbers),
        nullptr));
    if (!reply || reply->format != 32) {
        return {};
    }
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

bool ManagedDesktop::isManaged() const {
    // A manager that was killed leaves the name of its window behind, but not the window.
    const std::vector<std::uint32_t> sign = numbers(root_, "_NET_SUPPORTING_WM_CHECK");
    return sign.size() == 1 && numbers(sign.front(), "_NET_SUPPORTING_WM_CHECK") == sign &&
           numbers(root_, "_NET_WORKAREA").size() >= 4;
}

bool ManagedDesktop::takesWindows() const {
    // It says that it is there before it attends to windows; one that comes between may be missed.
    xcb_connection_t* c = connection_.get();
    const xcb_window_t window = xcb_generate_id(c);
    xcb_create_window(c, XCB_COPY_FROM_PARENT, window, root_, 0, 0, 100, 100, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(c, window);
    const auto isTaken = [&] { return !numbers(window, "WM_STATE").empty(); };
    const bool taken = waitUntil(isTaken, std::chrono::milliseconds(1000));
    xcb_destroy_window(c, window);
    return taken && waitUntil([&] { return numbers(root_, "_NET_CLIENT_LIST").empty(); });
}

std::vector<std::uint32_t> ManagedDesktop::windowsOf(std::int64_t process) const {
    std::vector<std::uint32_t> windows = numbers(root_, "_NET_CLIENT_LIST_STACKING");
    std::erase_if(windows, [&](std::uint32_t window) {
        return numbers(window, "_NET_WM_PID") != std::vector{static_cast<std::uint32_t>(process)};
    });
    return windows;
}

std::uint32_t ManagedDesktop::activeWindow() const {
    const auto active = numbers(root_, "_NET_ACTIVE_WINDOW");
    return active.empty() ? 0 : active.front();
}

std::uint32_t ManagedDesktop::frontWindow() const {
    const auto windows = numbers(root_, "_NET_CLIENT_LIST_STACKING");
    return windows.empty() ? 0 : windows.back();
}

bool ManagedDesktop::waitForFront(std::uint32_t window) const {
    return waitUntil([&] { return activeWindow() == window && frontWindow() == window; });
}

QRect ManagedDesktop::content(std::uint32_t window) const {
    xcb_connection_t* c = connection_.get();
    const auto size = owned(xcb_get_geometry_reply(c, xcb_get_geometry(c, window), nullptr));
    const auto place = owned(xcb_translate_coordinates_reply(
        c, xcb_translate_coordinates(c, window, root_, 0, 0), nullptr));
    return size && place ? QRect(place->dst_x, place->dst_y, size->width, size->height) : QRect();
}

QRect ManagedDesktop::frame(std::uint32_t window) const {
    const auto sides = numbers(window, "_NET_FRAME_EXTENTS");
    if (sides.size() != 4) {
        return {};
    }
    const auto width = [&](std::size_t side) { return static_cast<int>(sides[side]); };
    return content(window).adjusted(-width(0), -width(2), width(1), width(3));
}

QRect ManagedDesktop::workArea() const {
    const auto area = numbers(root_, "_NET_WORKAREA");
    const auto number = [&](std::size_t i) { return static_cast<int>(area.at(i)); };
    return {number(0), number(1), number(2), number(3)};
}

bool ManagedDesktop::hasState(std::uint32_t window, std::string_view state) const {
    const auto states = numbers(window, "_NET_WM_STATE");
    return std::find(states.begin(), states.end(), atom(state)) != states.end();
}

void ManagedDesktop::tell(
    std::uint32_t window, std::string_view message, std::vector<std::uint32_t> values) const {
    xcb_connection_t* c = connection_.get();
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom(message);
    std::copy(values.begin(), values.end(), event.data.data32);
    xcb_send_event(c, 0, root_,
        XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
        reinterpret_cast<const char*>(&event));
    xcb_flush(c);
}

void ManagedDesktop::bringToFront(std::uint32_t window) const {
    tell(window, "_NET_ACTIVE_WINDOW", {fromTheUser, XCB_CURRENT_TIME, 0});
}

void ManagedDesktop::minimise(std::uint32_t window) const {
    constexpr std::uint32_t asAnIcon = 3;
    tell(window, "WM_CHANGE_STATE", {asAnIcon});
}

void ManagedDesktop::maximise(std::uint32_t window) const {
    constexpr std::uint32_t add = 1;
    tell(window, "_NET_WM_STATE",
        {add, atom("_NET_WM_STATE_MAXIMIZED_HORZ"), atom("_NET_WM_STATE_MAXIMIZED_VERT"),
            fromTheUser});
}

void ManagedDesktop::close(std::uint32_t window) const {
    tell(window, "_NET_CLOSE_WINDOW", {XCB_CURRENT_TIME, fromTheUser});
}

} // namespace ostrella::test
