// The application's own wiring, and documents handed over from outside.

#include "RunFixture.h"

namespace ostrella::test {
namespace {

using testing::IsEmpty;

class Application : public RunTest {
protected:
    QUrl file(const std::string& name) const {
        const auto path = directory_.path() / name;
        writeFile(path, "solid\nfacet normal 0 0 1\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\n");
        return QUrl::fromLocalFile(QString::fromStdString(path.string()));
    }
    void expectLoaded(const std::string& name) {
        EXPECT_EQ(app_->parameters.loadingFileName(), name);
        EXPECT_TRUE(waitUntil([this] { return app_->parameters.openEdgeCount().has_value(); }));
        EXPECT_EQ(app_->parameters.stlURL(), directory_.path() / name);
    }
    void expectIgnored(const QUrl& url) {
        app_->openURL(url);
        EXPECT_FALSE(app_->parameters.loadingFileName()) << url.toString().toStdString();
    }
};

TEST_F(Application, beginsItsLogWithTheBootLines) {
    ASSERT_GE(app_->logStore.lines().size(), 2U);
    EXPECT_EQ(app_->logStore.lines()[0].text, "Ostrella 1.0 · Linux 6.1 · OpenGL");
    EXPECT_EQ(app_->logStore.lines()[1].text,
        "Awaiting geometry. Drop an STL onto the viewport, press Ctrl+O, or pick a sample.");
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(Application, opensAModelHandedOver) {
    app_->openURL(file("model.stl"));
    expectLoaded("model.stl");
}

TEST_F(Application, opensAModelWhateverTheCaseOfItsExtension) {
    app_->openURL(file("MODEL.STL"));
    expectLoaded("MODEL.STL");
}

TEST_F(Application, opensAModelWithAnUncommonName) {
    const std::string name = "50 % größer, #2 „neu“ " + std::string(200, 'x') + ".stl";
    app_->openURL(file(name));
    expectLoaded(name);
}

TEST_F(Application, ignoresWhatIsNoSTL) {
    expectIgnored(file("model.stl.gz"));
    expectIgnored(file("model.obj"));
    expectIgnored(file("stl"));
}

TEST_F(Application, ignoresWhatIsNoFile) {
    expectIgnored(QUrl(QStringLiteral("https://example.org/model.stl")));
    expectIgnored(QUrl());
}

TEST_F(Application, ignoresAModelHandedOverDuringARun) {
    placeCube();
    package_.setMesher(Script::hang);
    runUntilReady();
    expectIgnored(file("model.stl"));
    cancelToEnd();
    EXPECT_EQ(app_->parameters.mesh(), cube());
    EXPECT_EQ(app_->parameters.stlURL(), directory_.path() / "cube.stl");
}

TEST_F(Application, takesTheNewerOfTwoModelsHandedOver) {
    app_->openURL(file("first.stl"));
    app_->openURL(file("second.stl"));
    expectLoaded("second.stl");
}

} // namespace
} // namespace ostrella::test
