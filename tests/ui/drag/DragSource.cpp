// drag-source X Y WIDTH HEIGHT FILE...: a window from which the files can be dragged, as from a
// file manager. Says "ready", then "dragging", "would copy" or "would ignore" as the program below
// the pointer answers, and at last "dropped copy" or "dropped nothing".

#include <QDrag>
#include <QExposeEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QRasterWindow>
#include <QUrl>

#include <cstdio>

namespace {

void say(const char* line) {
    std::puts(line);
    std::fflush(stdout);
}

class Source final : public QRasterWindow {
public:
    explicit Source(QList<QUrl> files) : files_(std::move(files)) {}

protected:
    void exposeEvent(QExposeEvent* event) override {
        QRasterWindow::exposeEvent(event);
        if (isExposed() && !std::exchange(isReady_, true)) {
            say("ready");
        }
    }

    void mousePressEvent(QMouseEvent*) override {
        auto* const data = new QMimeData;
        data->setUrls(files_);
        auto* const drag = new QDrag(this);
        drag->setMimeData(data);
        connect(drag, &QDrag::actionChanged, this, [](Qt::DropAction action) {
            say(action == Qt::CopyAction ? "would copy" : "would ignore");
        });
        say("dragging");
        const Qt::DropAction done = drag->exec(Qt::CopyAction);
        say(done == Qt::CopyAction ? "dropped copy" : "dropped nothing");
    }

private:
    QList<QUrl> files_;
    bool isReady_ = false;
};

} // namespace

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    constexpr qsizetype firstFile = 5;
    QList<QUrl> files;
    for (const QString& file : arguments.mid(firstFile)) {
        files.append(QUrl::fromLocalFile(file));
    }
    Source source(files);
    source.setFlags(Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
    source.setGeometry(
        arguments[1].toInt(), arguments[2].toInt(), arguments[3].toInt(), arguments[4].toInt());
    source.show();
    return QGuiApplication::exec();
}
