#pragma once

#include <QRasterWindow>

#include <functional>
#include <string>

namespace ostrella {

/// A message in a window of its own with a button to close it. It is drawn without a graphics
/// device, so that it can also tell of a missing one.
class AlertWindow final : public QRasterWindow {
public:
    /// Shows one, which goes when it is closed; `onClosed` is called then. The texts may be empty.
    static void present(const std::string& message, const std::string& informativeText,
        std::function<void()> onClosed = {});

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    AlertWindow(const std::string& message, const std::string& informativeText,
        std::function<void()> onClosed);

    /// Places the texts and the button; the size of the window.
    QSize layOut();
    void setButtonDown(bool isDown);

    QString message_;
    QString informativeText_;
    std::function<void()> onClosed_;
    QRect messageBox_;
    QRect informativeBox_;
    QRect button_;
    bool isButtonDown_ = false;
};

} // namespace ostrella
