#include "Platform/WindowFront.h"

#include <QGuiApplication>
#include <QWindow>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

#include <xcb/xcb.h>

namespace ostrella {

namespace {

template <class Reply>
std::unique_ptr<Reply, decltype(&std::free)> owned(Reply* reply) {
    return {reply, &std::free};
}

xcb_atom_t atom(xcb_connection_t* connection, std::string_view name) {
    const auto reply = owned(xcb_intern_atom_reply(connection,
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

xcb_window_t rootOf(xcb_connection_t* connection, xcb_window_t window) {
    const auto reply =
        owned(xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr));
    return reply ? reply->root : xcb_window_t{XCB_WINDOW_NONE};
}

/// Whether a window manager says that it knows the message.
bool isSupported(xcb_connection_t* connection, xcb_window_t root, xcb_atom_t message) {
    constexpr std::uint32_t mostAtoms = 4096;
    const auto reply = owned(xcb_get_property_reply(connection,
        xcb_get_property(
            connection, 0, root, atom(connection, "_NET_SUPPORTED"), XCB_ATOM_ATOM, 0, mostAtoms),
        nullptr));
    if (!reply || reply->format != 32)
        return false;
    const auto* first = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
    const auto* last = first + reply->value_len;
    return std::find(first, last, message) != last;
}

/// The server's time now. It comes with events alone: with that of a property that has changed,
/// here on a connection of its own, since the other's events are the toolkit's.
xcb_timestamp_t timeNow() {
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> own(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    if (xcb_connection_has_error(own.get()) != 0)
        return XCB_CURRENT_TIME;
    const xcb_window_t window = xcb_generate_id(own.get());
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(own.get(), XCB_COPY_FROM_PARENT, window,
        xcb_setup_roots_iterator(xcb_get_setup(own.get())).data->root, 0, 0, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    constexpr std::uint8_t bitsPerCharacter = 8;
    xcb_change_property(own.get(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING,
        bitsPerCharacter, 0, nullptr);
    xcb_flush(own.get());
    while (const auto event = owned(xcb_wait_for_event(own.get()))) {
        if (event->response_type == XCB_PROPERTY_NOTIFY)
            return reinterpret_cast<const xcb_property_notify_event_t*>(event.get())->time;
        if (event->response_type == 0) // an error
            break;
    }
    return XCB_CURRENT_TIME;
}

} // namespace

bool WindowFront::ask(QWindow& window) {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr || !window.isVisible() || window.handle() == nullptr)
        return false;
    xcb_connection_t* connection = x11->connection();
    const auto id = static_cast<xcb_window_t>(window.winId());
    const xcb_window_t root = rootOf(connection, id);
    const xcb_atom_t message = atom(connection, "_NET_ACTIVE_WINDOW");
    if (root == XCB_WINDOW_NONE || !isSupported(connection, root, message))
        return false;
    // By its conventions 2 stands for what the user does, and 1 for a program's own idea. Of two
    // requests the manager heeds the newer one: what it is told is the time of this moment, not
    // that of the user's last key in a window that has lain behind others since.
    constexpr std::uint32_t onTheUsersWord = 2;
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = id;
    event.type = message;
    event.data.data32[0] = onTheUsersWord;
    event.data.data32[1] = timeNow();
    xcb_send_event(connection, 0, root,
        XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
        reinterpret_cast<const char*>(&event));
    xcb_flush(connection);
    return true;
}

} // namespace ostrella
