#pragma once

#include <QColor>
#include <QQuickItem>
#include <QString>

namespace ostrella {

/// A line icon by its name, square, in one colour, drawn for the screen's own pixels.
class Symbol : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(qreal size READ size WRITE setSize NOTIFY sizeChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)

public:
    explicit Symbol(QQuickItem* parent = nullptr);

    /// A file's name in resources/icons without its ending; nothing is drawn for others.
    QString name() const { return name_; }
    void setName(const QString& name);
    /// Width and height in points.
    qreal size() const { return size_; }
    void setSize(qreal size);
    QColor color() const { return color_; }
    void setColor(const QColor& color);

Q_SIGNALS:
    void nameChanged();
    void sizeChanged();
    void colorChanged();

protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void itemChange(ItemChange change, const ItemChangeData& value) override;

private:
    void redraw();

    QString name_;
    qreal size_ = 16;
    QColor color_ = Qt::white;
    bool stale_ = true;
};

} // namespace ostrella
