#pragma once

#include <QAbstractNativeEventFilter>
#include <QPoint>
#include <Qt>

#include <cstdint>
#include <memory>

struct xcb_connection_t;

namespace ostrella::test {

/// A connection of a test's own to the X server of `DISPLAY`, which makes the server believe in
/// input. Positions are pixels of one window from its upper left corner. Throws
/// std::runtime_error where the server or one of its extensions is missing.
class XServer final : public QAbstractNativeEventFilter {
public:
    explicit XServer(std::uintptr_t window);
    ~XServer() override;
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    void movePointer(QPoint point);
    /// 1 to 3 are the mouse's, 4 to 7 the wheel's.
    void button(int number, bool isDown);
    void key(Qt::Key key, bool isDown);

    QPoint onScreen(QPoint point) const;
    /// Milliseconds of the clock that the server's events are stamped with.
    unsigned long time() const;

    /// Sends the window a message that the application sees after all input until now.
    std::uint32_t sendMark();
    /// The last of them that the application has seen.
    std::uint32_t lastMark() const { return lastMark_; }

    /// A number for the picture of the pointer on the screen.
    std::uint64_t pointerPicture() const;

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const;
    };

    void fake(int type, int detail, QPoint point = {});
    /// Everything sent until now has been done when it returns.
    void finish() const;
    std::uint8_t keyCode(Qt::Key key) const;

    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    std::uint32_t window_;
    std::uint32_t root_ = 0;
    std::uint32_t markType_ = 0;
    std::uint32_t marksSent_ = 0;
    std::uint32_t lastMark_ = 0;
};

} // namespace ostrella::test
