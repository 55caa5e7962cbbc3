#include "support/XServer.h"

#include <QByteArray>
#include <QCoreApplication>

#include <xcb/xcb.h>
#include <xcb/xfixes.h>
#include <xcb/xtest.h>

#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace ostrella::test {

namespace {

template <class T>
struct Free {
    void operator()(T* reply) const { std::free(reply); }
};

template <class T>
using Reply = std::unique_ptr<T, Free<T>>;

template <class T>
Reply<T> received(T* reply) {
    if (!reply)
        throw std::runtime_error("the X server does not answer");
    return Reply<T>(reply);
}

/// The X protocol's numbers of keys; those of Latin-1 are the characters themselves.
std::uint32_t keySymbol(Qt::Key key) {
    switch (key) {
    case Qt::Key_Backspace:
        return 0xFF08;
    case Qt::Key_Tab:
        return 0xFF09;
    case Qt::Key_Return:
        return 0xFF0D;
    case Qt::Key_Escape:
        return 0xFF1B;
    case Qt::Key_Home:
        return 0xFF50;
    case Qt::Key_Left:
        return 0xFF51;
    case Qt::Key_Up:
        return 0xFF52;
    case Qt::Key_Right:
        return 0xFF53;
    case Qt::Key_Down:
        return 0xFF54;
    case Qt::Key_PageUp:
        return 0xFF55;
    case Qt::Key_PageDown:
        return 0xFF56;
    case Qt::Key_End:
        return 0xFF57;
    case Qt::Key_Shift:
        return 0xFFE1;
    case Qt::Key_Control:
        return 0xFFE3;
    case Qt::Key_Alt:
        return 0xFFE9;
    case Qt::Key_Meta:
        return 0xFFEB;
    case Qt::Key_Delete:
        return 0xFFFF;
    default:
        break;
    }
    if (key >= Qt::Key_F1 && key <= Qt::Key_F12)
        return 0xFFBE + static_cast<std::uint32_t>(key - Qt::Key_F1);
    if (key >= Qt::Key_A && key <= Qt::Key_Z)
        return static_cast<std::uint32_t>(key - Qt::Key_A) + 'a';
    if (key >= Qt::Key_Space && key <= Qt::Key_ydiaeresis)
        return static_cast<std::uint32_t>(key);
    throw std::runtime_error("this key cannot be pressed here");
}

} // namespace

void XServer::Disconnect::operator()(xcb_connection_t* connection) const {
    xcb_disconnect(connection);
}

XServer::XServer(std::uintptr_t window)
    : connection_(xcb_connect(nullptr, nullptr)), window_(static_cast<std::uint32_t>(window)) {
    xcb_connection_t* c = connection_.get();
    if (xcb_connection_has_error(c) != 0)
        throw std::runtime_error("there is no X server");
    const auto* extension = xcb_get_extension_data(c, &xcb_test_id);
    if (!extension || extension->present == 0)
        throw std::runtime_error("the X server lacks the XTEST extension");
    // Nothing else of this extension is answered before.
    received(xcb_xfixes_query_version_reply(c, xcb_xfixes_query_version(c, 4, 0), nullptr));
    root_ = xcb_setup_roots_iterator(xcb_get_setup(c)).data->root;
    constexpr std::string_view name = "_OSTRELLA_TEST_MARK";
    markType_ =
        received(xcb_intern_atom_reply(c, xcb_intern_atom(c, 0, name.size(), name.data()), nullptr))
            ->atom;
    QCoreApplication::instance()->installNativeEventFilter(this);
}

XServer::~XServer() {
    QCoreApplication::instance()->removeNativeEventFilter(this);
}

void XServer::fake(int type, int detail, QPoint point) {
    xcb_test_fake_input(connection_.get(), static_cast<std::uint8_t>(type),
        static_cast<std::uint8_t>(detail), XCB_CURRENT_TIME, root_,
        static_cast<std::int16_t>(point.x()), static_cast<std::int16_t>(point.y()), 0);
    finish();
}

void XServer::finish() const {
    xcb_connection_t* c = connection_.get();
    received(xcb_get_input_focus_reply(c, xcb_get_input_focus(c), nullptr));
}

void XServer::movePointer(QPoint point) {
    constexpr int absolute = 0;
    fake(XCB_MOTION_NOTIFY, absolute, onScreen(point));
}

void XServer::button(int number, bool isDown) {
    fake(isDown ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, number);
}

void XServer::key(Qt::Key key, bool isDown) {
    fake(isDown ? XCB_KEY_PRESS : XCB_KEY_RELEASE, keyCode(key));
}

std::uint8_t XServer::keyCode(Qt::Key key) const {
    xcb_connection_t* c = connection_.get();
    const auto* setup = xcb_get_setup(c);
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto mapping = received(xcb_get_keyboard_mapping_reply(
        c, xcb_get_keyboard_mapping(c, setup->min_keycode, count), nullptr));
    const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(mapping.get());
    const std::uint32_t wanted = keySymbol(key);
    for (int code = 0; code < count; ++code) {
        if (symbols[code * mapping->keysyms_per_keycode] == wanted)
            return static_cast<std::uint8_t>(setup->min_keycode + code);
    }
    throw std::runtime_error("the X server's keyboard lacks this key");
}

QPoint XServer::onScreen(QPoint point) const {
    xcb_connection_t* c = connection_.get();
    const auto translated = received(xcb_translate_coordinates_reply(c,
        xcb_translate_coordinates(c, window_, root_, static_cast<std::int16_t>(point.x()),
            static_cast<std::int16_t>(point.y())),
        nullptr));
    return {translated->dst_x, translated->dst_y};
}

unsigned long XServer::time() const {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<unsigned long>(
        std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

std::uint32_t XServer::sendMark() {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window_;
    event.type = markType_;
    event.data.data32[0] = ++marksSent_;
    // Without a mask it goes to the window's owner.
    xcb_send_event(connection_.get(), 0, window_, XCB_EVENT_MASK_NO_EVENT,
        reinterpret_cast<const char*>(&event));
    finish();
    return marksSent_;
}

bool XServer::nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/) {
    if (type != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<const xcb_client_message_event_t*>(message);
    if ((event->response_type & 0x7F) != XCB_CLIENT_MESSAGE || event->type != markType_ ||
        event->window != window_)
        return false;
    lastMark_ = event->data.data32[0];
    return true;
}

std::uint64_t XServer::pointerPicture() const {
    xcb_connection_t* c = connection_.get();
    const auto picture =
        received(xcb_xfixes_get_cursor_image_reply(c, xcb_xfixes_get_cursor_image(c), nullptr));
    const std::uint32_t* pixels = xcb_xfixes_get_cursor_image_cursor_image(picture.get());
    std::uint64_t number = 14'695'981'039'346'656'037U;
    const auto add = [&](std::uint32_t value) { number = (number ^ value) * 1'099'511'628'211U; };
    add(picture->width);
    add(picture->height);
    for (int i = 0; i < picture->width * picture->height; ++i)
        add(pixels[i]);
    return number;
}

} // namespace ostrella::test
