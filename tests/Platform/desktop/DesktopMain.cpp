#include "Models/MainThread.h"

#include <QGuiApplication>

#include <gmock/gmock.h>

/// The tests of what a window asks of the desktop have a palette, but need no screen.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    const ostrella::MainThread mainThread;
    return RUN_ALL_TESTS();
}
