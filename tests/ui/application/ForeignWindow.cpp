#include "ForeignWindow.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace ostrella::test {

namespace {

template <class T>
std::unique_ptr<T, void (*)(void*)> owned(T* reply) {
    return {reply, std::free};
}

xcb_atom_t atom(xcb_connection_t* c, std::string_view name) {
    const auto reply = owned(xcb_intern_atom_reply(
        c, xcb_intern_atom(c, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

std::string property(xcb_connection_t* c, xcb_window_t window, std::string_view name) {
    constexpr std::uint32_t mostWords = 1000;
    const auto reply = owned(xcb_get_property_reply(c,
        xcb_get_property(c, 0, window, atom(c, name), XCB_GET_PROPERTY_TYPE_ANY, 0, mostWords),
        nullptr));
    if (!reply)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
        static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

bool isViewable(xcb_connection_t* c, xcb_window_t window) {
    const auto reply =
        owned(xcb_get_window_attributes_reply(c, xcb_get_window_attributes(c, window), nullptr));
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

/// The first that is shown and has this owner and title, of all that lies in a window: a window
/// manager puts those of others into frames of its own.
xcb_window_t search(
    xcb_connection_t* c, xcb_window_t window, const std::string& owner, const std::string& title) {
    const auto tree = owned(xcb_query_tree_reply(c, xcb_query_tree(c, window), nullptr));
    const int count = tree ? xcb_query_tree_children_length(tree.get()) : 0;
    for (int i = 0; i < count; ++i) {
        const xcb_window_t child = xcb_query_tree_children(tree.get())[i];
        if (!isViewable(c, child))
            continue;
        if (property(c, child, "_NET_WM_PID") == owner &&
            (title.empty() || property(c, child, "_NET_WM_NAME") == title))
            return child;
        if (const xcb_window_t found = search(c, child, owner, title); found != XCB_NONE)
            return found;
    }
    return XCB_NONE;
}

/// Everything sent until now has been done when it returns. What a connection that is closed at
/// once has sent last may be lost.
void finish(xcb_connection_t* c) {
    owned(xcb_get_input_focus_reply(c, xcb_get_input_focus(c), nullptr));
}

} // namespace

ForeignWindow::ForeignWindow(std::shared_ptr<xcb_connection_t> connection, std::uint32_t id)
    : connection_(std::move(connection)), id_(id) {}

std::optional<ForeignWindow> ForeignWindow::ofProcess(
    std::int64_t process, const std::string& title) {
    const std::shared_ptr<xcb_connection_t> connection(
        xcb_connect(nullptr, nullptr), xcb_disconnect);
    xcb_connection_t* c = connection.get();
    if (xcb_connection_has_error(c) != 0)
        throw std::runtime_error("there is no X server");
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(c)).data->root;
    const auto number = static_cast<std::uint32_t>(process);
    const std::string owner(reinterpret_cast<const char*>(&number), sizeof number);
    const xcb_window_t found = search(c, root, owner, title);
    return found != XCB_NONE ? std::optional(ForeignWindow(connection, found)) : std::nullopt;
}

std::string ForeignWindow::title() const {
    return property(connection_.get(), id_, "_NET_WM_NAME");
}

bool ForeignWindow::isShown() const {
    return isViewable(connection_.get(), id_);
}

void ForeignWindow::focus() const {
    xcb_set_input_focus(connection_.get(), XCB_INPUT_FOCUS_POINTER_ROOT, id_, XCB_CURRENT_TIME);
    finish(connection_.get());
}

void ForeignWindow::askToClose() const {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = id_;
    event.type = atom(connection_.get(), "WM_PROTOCOLS");
    event.data.data32[0] = atom(connection_.get(), "WM_DELETE_WINDOW");
    event.data.data32[1] = XCB_CURRENT_TIME;
    xcb_send_event(
        connection_.get(), 0, id_, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&event));
    finish(connection_.get());
}

} // namespace ostrella::test
