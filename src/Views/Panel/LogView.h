#pragma once

#include "Views/Format/LogFollowing.h"
#include "Views/Panel/LogCopy.h"
#include "Views/Panel/LogLines.h"
#include "Views/Panel/LogRow.h"
#include "Views/Panel/LogScroll.h"
#include "Views/Panel/LogSelection.h"
#include "Views/Panel/LogVisibleRows.h"

#include <QAccessible>
#include <QElapsedTimer>
#include <QPointer>
#include <QQuickPaintedItem>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <optional>
#include <unordered_map>

namespace ostrella {

/// The scrolling list of the log's lines. Only what is in view is laid out, so that a million lines
/// cost what a dozen do; text is selected with the mouse over any number of rows.
class LogView : public QQuickPaintedItem, private QAccessible::ActivationObserver {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrella::LogLines* lines READ lines WRITE setLines NOTIFY linesChanged)
    Q_PROPERTY(bool isFollowing READ isFollowing WRITE setFollowing NOTIFY isFollowingChanged)
    Q_PROPERTY(qreal barSize READ barSize NOTIFY moved)
    Q_PROPERTY(qreal barPosition READ barPosition NOTIFY moved)
    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY selectionChanged)
    Q_PROPERTY(bool showsFocus READ showsFocus NOTIFY showsFocusChanged)
    Q_PROPERTY(ostrella::LogVisibleRows* visibleRows READ visibleRows CONSTANT)

public:
    explicit LogView(QQuickItem* parent = nullptr);
    ~LogView() override;

    LogLines* lines() const { return lines_; }
    void setLines(LogLines* lines);
    bool isFollowing() const { return following_.isFollowing(); }
    void setFollowing(bool following);
    bool hasSelection() const { return !selection_.empty(); }
    /// The view has the keyboard and got it by the keyboard.
    bool showsFocus() const { return hasActiveFocus() && isFocusFromKeys_; }
    /// The rows in view, for those who have them read aloud.
    LogVisibleRows* visibleRows() { return &visibleRows_; }

    qreal barSize() const { return scroll_.barSize(); }
    qreal barPosition() const { return scroll_.barPosition(); }
    /// Moves to where the user has dragged the bar.
    Q_INVOKABLE void dragBarTo(qreal position);

    /// Puts what is selected on the clipboard, and selects every line.
    Q_INVOKABLE void copy();
    Q_INVOKABLE void selectAll();

    /// Where the rows stand, for tests.
    const LogScroll& scroll() const { return scroll_; }

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void linesChanged();
    void isFollowingChanged();
    void moved();
    void selectionChanged();
    void showsFocusChanged();

protected:
    bool event(QEvent* event) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;

private:
    using LineNumber = std::optional<std::size_t>;

    void accessibilityActiveChanged(bool active) override;
    void applyTheme();
    void takeLines();
    void layOut();
    void placed();
    bool isLaidOut() const { return lines_ && isVisible() && width() > 0 && height() > 0; }
    bool isAtEnd() const { return following_.position() && following_.position() == lastNumber(); }
    LineNumber lastNumber(std::size_t before = 0) const;

    void moveBy(qreal distance);
    void userMoved();
    void tellFollowing(bool before);

    LogRow& rowOf(std::size_t row);
    LogPlace placeAt(QPointF point);
    void selectionMoved();
    void dragTo(QPointF point);
    void keepScrolling();

    QPointer<LogLines> lines_;
    LogFilter filter_ = LogFilter::all;
    LogFollowing<std::size_t> following_;
    LogStyle style_;
    LogScroll scroll_;
    std::unordered_map<std::size_t, std::unique_ptr<LogRow>> rows_;
    LogVisibleRows visibleRows_;
    bool isReadOut_ = QAccessible::isActive();

    LogSelection selection_;
    std::unique_ptr<LogCopy> copy_;
    bool isDragging_ = false;
    QPointF pointer_;
    QTimer dragTimer_;
    QElapsedTimer sinceDoubleClick_;
    bool isFocusFromKeys_ = false;
};

} // namespace ostrella
