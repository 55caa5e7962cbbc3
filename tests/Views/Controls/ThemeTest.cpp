#include "Views/Controls/Theme.h"

#include <QCoreApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <gtest/gtest.h>

namespace ostrella {
void useControlsModule();
}

TEST(Theme, isThereForFilesThatImportTheControls) {
    ostrella::useControlsModule();
    QQmlEngine engine;
    engine.addImportPath(QStringLiteral(":/qt/qml"));
    QQmlComponent c(&engine);
    c.setData("import Ostrella.Controls\nStatusDot {}", QUrl());
    std::unique_ptr<QObject> o(c.create());
    ASSERT_TRUE(o) << c.errorString().toStdString();
    EXPECT_EQ(o->property("color").toString().toStdString(), "#f5a524");
}
