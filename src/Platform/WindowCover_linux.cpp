#include "Platform/WindowCover.h"

#include <QAbstractNativeEventFilter>
#include <QGuiApplication>
#include <QPlatformSurfaceEvent>
#include <QWindow>

#include <cstdlib>
#include <memory>
#include <utility>

#include <xcb/xcb.h>

namespace ostrella {

namespace {

/// Null where the windows are not those of an X server.
xcb_connection_t* serverConnection() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 != nullptr ? x11->connection() : nullptr;
}

template <class Reply>
std::unique_ptr<Reply, decltype(&std::free)> owned(Reply* reply) {
    return {reply, &std::free};
}

/// Asks the server to tell of the window's visibility, besides what Qt has asked for.
void selectVisibility(xcb_connection_t* connection, xcb_window_t window) {
    const auto attributes = owned(xcb_get_window_attributes_reply(
        connection, xcb_get_window_attributes(connection, window), nullptr));
    if (!attributes || (attributes->your_event_mask & XCB_EVENT_MASK_VISIBILITY_CHANGE) != 0)
        return;
    const std::uint32_t mask = attributes->your_event_mask | XCB_EVENT_MASK_VISIBILITY_CHANGE;
    xcb_change_window_attributes(connection, window, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(connection);
}

} // namespace

class WindowCover::Watch final : public QObject, public QAbstractNativeEventFilter {
public:
    Watch(QWindow& window, std::function<void()> onChange)
        : window_(window), onChange_(std::move(onChange)) {
        qGuiApp->installNativeEventFilter(this);
        window.installEventFilter(this);
        select();
    }
    ~Watch() override {
        if (qGuiApp != nullptr)
            qGuiApp->removeNativeEventFilter(this);
    }

    bool isCovered() const { return isCovered_; }

    /// A window gets its counterpart on the server late, may get another one, and loses what was
    /// asked for when its flags change.
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Show) {
            select();
        } else if (event->type() == QEvent::PlatformSurface) {
            const auto kind = static_cast<QPlatformSurfaceEvent*>(event)->surfaceEventType();
            set(false);
            if (kind == QPlatformSurfaceEvent::SurfaceCreated)
                select();
        }
        return QObject::eventFilter(watched, event);
    }

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr*) override {
        if (type != "xcb_generic_event_t")
            return false;
        const auto* event = static_cast<const xcb_generic_event_t*>(message);
        constexpr int kind = 0x7F; // the bit above it marks what another client has sent
        if ((event->response_type & kind) != XCB_VISIBILITY_NOTIFY)
            return false;
        const auto* change = static_cast<const xcb_visibility_notify_event_t*>(message);
        if (window_.handle() != nullptr && change->window == window_.winId())
            set(change->state == XCB_VISIBILITY_FULLY_OBSCURED);
        return false;
    }

private:
    void select() {
        xcb_connection_t* connection = serverConnection();
        if (connection != nullptr && window_.handle() != nullptr)
            selectVisibility(connection, static_cast<xcb_window_t>(window_.winId()));
    }

    void set(bool isCovered) {
        if (isCovered != std::exchange(isCovered_, isCovered) && onChange_)
            onChange_();
    }

    QWindow& window_;
    std::function<void()> onChange_;
    bool isCovered_ = false;
};

WindowCover::WindowCover(QWindow& window, std::function<void()> onChange)
    : watch_(std::make_unique<Watch>(window, std::move(onChange))) {}

WindowCover::~WindowCover() = default;

bool WindowCover::isCovered() const {
    return watch_->isCovered();
}

} // namespace ostrella
