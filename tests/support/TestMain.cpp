#include "Models/MainThread.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

/// Every test program runs as the application does: on a main thread with an event loop at hand.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    QCoreApplication application(argc, argv);
    const ostrella::MainThread mainThread;
    return RUN_ALL_TESTS();
}
