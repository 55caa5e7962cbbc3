#include "MainThreadWatchdog.h"

#include "Models/MainThread.h"

#include <QSurfaceFormat>

#include <gmock/gmock.h>

/// As UITestMain.cpp, with an application object that measures.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    qputenv("QSG_RENDER_LOOP", "basic");
    QSurfaceFormat format;
    format.setVersion(4, 3);
    format.setProfile(QSurfaceFormat::CoreProfile);
    format.setDepthBufferSize(24);
    format.setStencilBufferSize(8);
    QSurfaceFormat::setDefaultFormat(format);
    const ostrella::test::MainThreadWatchdog application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    const ostrella::MainThread mainThread;
    return RUN_ALL_TESTS();
}
