// The window's states as pictures: ostrella-window-pictures FOLDER WIDTHxHEIGHT [STATE…]
// Writes STATE-dark.png and STATE-light.png of each state named, or of all. The appearance is
// changed while the window is open, as the desktop would.

#include "Models/MainThread.h"
#include "Views/GraphicsChoice.h"
#include "ui/pictures/PictureStates.h"

#include <QGuiApplication>
#include <QImageWriter>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <string>

using namespace ostrella;
using namespace ostrella::test;

namespace {

bool save(const QImage& picture, const std::filesystem::path& file) {
    QImageWriter writer(QString::fromStdString(file.string()), "png");
    writer.setCompression(100);
    if (writer.write(picture))
        return true;
    std::fprintf(stderr, "%s: %s\n", file.c_str(), writer.errorString().toUtf8().constData());
    return false;
}

bool draw(const PictureState& state, QSize size, const std::filesystem::path& folder) {
    try {
        PictureStage stage;
        stage.setTextScale(state.textScale);
        stage.resize(state.size.value_or(size));
        stage.setDark(true);
        state.reach(stage);
        bool saved = save(stage.picture(), folder / (state.name + "-dark.png"));
        stage.setDark(false);
        saved = save(stage.picture(), folder / (state.name + "-light.png")) && saved;
        return saved;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", state.name.c_str(), error.what());
        return false;
    }
}

QSize sizeOf(const char* text) {
    int width = 0;
    int height = 0;
    return std::sscanf(text, "%dx%d", &width, &height) == 2 ? QSize(width, height) : QSize();
}

} // namespace

int main(int argc, char** argv) {
    const QSize size = argc > 2 ? sizeOf(argv[2]) : QSize();
    if (!size.isValid()) {
        std::fprintf(stderr, "usage: ostrella-window-pictures FOLDER WIDTHxHEIGHT [STATE…]\n");
        return 2;
    }
    qputenv("TZ", "UTC");
    qputenv("OSTRELLA_REDUCED_MOTION", "1");
    GraphicsChoice::prepare();
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("Ostrella"));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    const MainThread mainThread;
    const std::filesystem::path folder = argv[1];
    std::filesystem::create_directories(folder);

    bool good = true;
    for (const PictureState& state : pictureStates()) {
        const bool isWanted =
            argc == 3 || std::any_of(argv + 3, argv + argc,
                             [&](const char* name) { return state.name == name; });
        if (isWanted)
            good = draw(state, size, folder) && good;
    }
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
