#pragma once

#include <QObject>
#include <QUrl>

namespace ostrella {

/// The documents that the system hands to the running application, as a Mac does for a double click
/// in the Finder. They come as events to the application object.
class DocumentEvents : public QObject {
    Q_OBJECT

public:
    /// Listens to the application object, which exists.
    explicit DocumentEvents(QObject* parent = nullptr);

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void handedOver(const QUrl& document);
};

} // namespace ostrella
