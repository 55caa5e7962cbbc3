#pragma once

#include <QQuickWindow>

namespace ostrella {

class OstrellaApp;
class ViewportItem;

/// The application's one window, filled by the viewport. Goes before the shared objects do.
class MainWindow final : public QQuickWindow {
    Q_OBJECT

public:
    explicit MainWindow(OstrellaApp& app);

    ViewportItem& viewport() { return *viewport_; }

Q_SIGNALS:
    /// The user has closed it.
    void closed();

protected:
    bool event(QEvent* event) override;

private:
    ViewportItem* viewport_;
};

} // namespace ostrella
