#pragma once

#include <QMimeData>
#include <QPointF>

#include <filesystem>
#include <vector>

class QWindow;

namespace ostrella::test {

/// A drag of files from another program, told to the application as the plugin of its window system
/// does. Positions are points of the window. It leaves with the object, unless it was dropped.
class Drag {
public:
    Drag(QWindow& window, const std::vector<std::filesystem::path>& files);
    Drag(QWindow& window, const QList<QUrl>& items);
    ~Drag();
    Drag(const Drag&) = delete;
    Drag& operator=(const Drag&) = delete;

    /// Whether the application would take a drop there.
    bool moveTo(QPointF point);
    /// Whether it takes it.
    bool drop(QPointF point);
    void leave();

private:
    QWindow& window_;
    QMimeData data_;
    bool isInside_ = false;
};

} // namespace ostrella::test
