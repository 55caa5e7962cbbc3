// How a model comes in: the newest load wins, whichever is done first, and a failure is told once.

#include "Models/MainThread.h"
#include "RunFixture.h"
#include "Solver/Geometry/ModelLoadError.h"
#include "Solver/Geometry/STLParseError.h"

#include <future>

#include <sys/stat.h>

namespace ostrella::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// A parse that takes as long as the test wants.
class SlowParse {
public:
    STLImporter::Parse function() {
        return [result = result_.get_future().share(), user = user_](
                   const std::filesystem::path&) { return result.get(); };
    }
    void give(const TriangleMesh& mesh) { result_.set_value(mesh); }
    void fail(const std::string& text) {
        result_.set_exception(std::make_exception_ptr(std::runtime_error(text)));
    }
    /// The background task is done with it: its result is on its way to the main thread.
    bool isOver() const { return user_.use_count() == 1; }

private:
    std::promise<TriangleMesh> result_;
    std::shared_ptr<int> user_ = std::make_shared<int>();
};

class Import : public RunTest {
protected:
    Import() {
        observer_ = app_->notifications.observe(
            Notifications::geometryLoaded, [this](const std::any& object) {
                EXPECT_EQ(std::any_cast<SimulationParameters*>(object), &app_->parameters);
                ++notificationCount_;
            });
    }

    /// Begins a load as the open panel does, with a parse of the test's own.
    void begin(const std::string& name, SlowParse& parse) {
        const std::int64_t token = app_->importer.newToken();
        app_->parameters.setLoadingFileName(name);
        app_->importer.load(directory_.path() / name, app_->parameters, token, parse.function());
    }
    /// Opens a file of that content and waits for its end.
    void open(const std::string& name, const std::string& content) {
        writeFile(directory_.path() / name, content);
        openFile(directory_.path() / name);
    }
    void openFile(const std::filesystem::path& file) {
        const int before = notificationCount_;
        app_->importer.open(file, app_->parameters);
        EXPECT_TRUE(app_->parameters.loadingFileName());
        EXPECT_TRUE(waitUntil([&] { return notificationCount_ > before || !alerts_.empty(); }));
    }
    void waitForNotification() {
        ASSERT_TRUE(waitUntil([this] { return notificationCount_ > 0; }));
    }
    /// Waits until the main thread has had the parse's result.
    void settle(const SlowParse& parse) {
        ASSERT_TRUE(waitUntil([&parse] { return parse.isOver(); }));
        bool arrived = false;
        MainThread::post([&arrived] { arrived = true; });
        ASSERT_TRUE(waitUntil([&arrived] { return arrived; }));
    }

    NotificationCenter::Token observer_;
    int notificationCount_ = 0;
};

TEST_F(Import, showsTheModelAtOnceAndItsOpenEdgesAMomentLater) {
    std::optional<std::int64_t> edgesWithTheMesh = -1;
    QObject::connect(&app_->parameters, &SimulationParameters::meshChanged,
        [&] { edgesWithTheMesh = app_->parameters.openEdgeCount(); });
    SlowParse parse;
    begin("open.stl", parse);
    EXPECT_EQ(app_->parameters.loadingFileName(), "open.stl");
    parse.give(cube(1));
    waitForNotification();
    EXPECT_EQ(edgesWithTheMesh, std::nullopt);
    EXPECT_EQ(app_->parameters.mesh(), cube(1));
    EXPECT_EQ(app_->parameters.stlURL(), directory_.path() / "open.stl");
    EXPECT_EQ(app_->parameters.openEdgeCount(), 3);
    EXPECT_FALSE(app_->parameters.loadingFileName());
    EXPECT_THAT(lines(),
        ElementsAre(TextLine("Loaded open.stl · 11 facets · 1.00 × 1.00 × 1.00 m", Level::info),
            TextLine("STL is not water-tight · 3 open edges", Level::warn),
            TextLine("Ready. Press Ctrl+R to run.", Level::info)));
}

TEST_F(Import, setsTheFileBeforeTheModel) {
    std::optional<std::filesystem::path> fileWithTheMesh;
    QObject::connect(&app_->parameters, &SimulationParameters::meshChanged,
        [&] { fileWithTheMesh = app_->parameters.stlURL(); });
    SlowParse parse;
    begin("a.stl", parse);
    parse.give(cube());
    waitForNotification();
    EXPECT_EQ(fileWithTheMesh, directory_.path() / "a.stl");
}

TEST_F(Import, ofTwoQuickLoadsTakesTheSecondIfItEndsLast) {
    SlowParse first;
    SlowParse second;
    begin("first.stl", first);
    begin("second.stl", second);
    first.give(cube(1));
    second.give(cube());
    waitForNotification();
    EXPECT_EQ(app_->parameters.mesh(), cube());
    EXPECT_EQ(app_->parameters.stlURL(), directory_.path() / "second.stl");
    settle(first);
    EXPECT_EQ(notificationCount_, 1);
}

TEST_F(Import, ofTwoQuickLoadsTakesTheSecondIfItEndsFirst) {
    SlowParse first;
    SlowParse second;
    begin("first.stl", first);
    begin("second.stl", second);
    second.give(cube());
    waitForNotification();
    first.give(cube(1));
    settle(first);
    EXPECT_EQ(app_->parameters.mesh(), cube());
    EXPECT_EQ(app_->parameters.stlURL(), directory_.path() / "second.stl");
    EXPECT_EQ(notificationCount_, 1);
}

TEST_F(Import, showsTheNewerNameWhileAnOlderLoadEnds) {
    SlowParse first;
    SlowParse second;
    begin("first.stl", first);
    begin("second.stl", second);
    first.give(cube(1));
    settle(first);
    EXPECT_EQ(app_->parameters.loadingFileName(), "second.stl");
    EXPECT_FALSE(app_->parameters.mesh());
    second.give(cube());
}

TEST_F(Import, dropsTheOpenEdgesOfAModelThatIsBeingReplaced) {
    SlowParse first;
    SlowParse second;
    bool replaced = false;
    QObject::connect(&app_->parameters, &SimulationParameters::meshChanged, [&] {
        if (!std::exchange(replaced, true)) {
            begin("second.stl", second);
        }
    });
    begin("first.stl", first);
    first.give(cube(1));
    ASSERT_TRUE(waitUntil([&replaced] { return replaced; }));
    second.give(cube());
    waitForNotification();
    EXPECT_EQ(app_->parameters.openEdgeCount(), 0);
    EXPECT_EQ(notificationCount_, 1);
    EXPECT_THAT(texts(), SizeIs(2));
}

TEST_F(Import, ofAStaleLoadFailsSilently) {
    SlowParse first;
    SlowParse second;
    begin("first.stl", first);
    begin("second.stl", second);
    first.fail("nobody wants to know");
    settle(first);
    second.give(cube());
    waitForNotification();
    EXPECT_THAT(alerts_, IsEmpty());
}

TEST_F(Import, thatFailsTellsWhyAndLeavesTheModelAlone) {
    placeCube();
    SlowParse parse;
    begin("bad.stl", parse);
    parse.fail("the reason");
    ASSERT_TRUE(waitUntil([this] { return !alerts_.empty(); }));
    EXPECT_THAT(alerts_, ElementsAre(std::pair("Couldn't load STL", "the reason")));
    EXPECT_FALSE(app_->parameters.loadingFileName());
    EXPECT_EQ(app_->parameters.mesh(), cube());
    EXPECT_EQ(app_->parameters.stlURL(), directory_.path() / "cube.stl");
    EXPECT_EQ(notificationCount_, 0);
    EXPECT_THAT(texts(), IsEmpty());
}

TEST_F(Import, handsAFailureToTheCallersOwnHandler) {
    SlowParse parse;
    parse.fail("the reason");
    std::string told;
    app_->importer.load("x.stl", app_->parameters, app_->importer.newToken(), parse.function(),
        [&told](const std::exception_ptr& error) { told = errorDescription(error); });
    ASSERT_TRUE(waitUntil([&told] { return !told.empty(); }));
    EXPECT_EQ(told, "the reason");
    EXPECT_THAT(alerts_, IsEmpty());
}

TEST_F(Import, thatOutlivesItsParametersDoesNothing) {
    auto parameters = std::make_unique<SimulationParameters>();
    SlowParse parse;
    app_->importer.load("x.stl", *parameters, app_->importer.newToken(), parse.function());
    parameters.reset();
    parse.give(cube());
    settle(parse);
    EXPECT_EQ(notificationCount_, 0);
}

TEST_F(Import, readsAnOrdinaryFile) {
    open("Model with blanks, „quotes“ and ümläuts.stl",
        "solid\nfacet normal 0 0 1\nvertex 0 0 0\nvertex 2 0 0\nvertex 0 3 0\n");
    EXPECT_EQ(app_->parameters.mesh()->facetCount(), 1U);
    EXPECT_EQ(texts().front(),
        "Loaded Model with blanks, „quotes“ and ümläuts.stl · 1 facets · 2.00 × 3.00 × 0.00 m");
}

struct BadFile {
    const char* name;
    std::string content;
    const char* text;
};

void PrintTo(const BadFile& file, std::ostream* stream) {
    *stream << file.name;
}

class BadModel : public Import, public testing::WithParamInterface<BadFile> {};

TEST_P(BadModel, isRefusedWithItsText) {
    open("bad.stl", GetParam().content);
    EXPECT_THAT(alerts_, ElementsAre(std::pair("Couldn't load STL", GetParam().text)));
    EXPECT_FALSE(app_->parameters.mesh());
    EXPECT_FALSE(app_->parameters.loadingFileName());
    EXPECT_EQ(readFile(directory_.path() / "bad.stl"), GetParam().content);
}

INSTANTIATE_TEST_SUITE_P(Files, BadModel,
    testing::Values(BadFile{"empty", "", "STL file is empty."},
        BadFile{"notText", "\xff\xfe\xfd", "Invalid ASCII STL: file is not ASCII/UTF-8 decodable"},
        BadFile{"noVertices", "solid\nendsolid\n", "Invalid ASCII STL: no vertices found"},
        BadFile{"capitals", "FACET NORMAL 0 0 1\nVERTEX 0 0 0\n",
            "Invalid ASCII STL: no vertices found"},
        BadFile{"halfFacet", "vertex 0 0 0\nvertex 1 0 0\nvertex 1 1 0\nvertex 2 2 2\n",
            "Invalid ASCII STL: vertex count 4 not divisible by 3"},
        BadFile{"truncatedBinary",
            std::string(80, 'x') + std::string("\x02\0\0\0", 4) + std::string(50, '\0'),
            "Invalid ASCII STL: no vertices found"},
        BadFile{"noFacets", std::string(84, '\0'),
            "The model has no facets. Export it again as a triangulated surface."},
        BadFile{"notANumber", "vertex 0 0 0\nvertex nan 0 0\nvertex 0 1 0\n",
            "Facet 1 of 1 has a corner that is not a finite number. Export the model again, or "
            "repair it."}),
    [](const auto& file) { return file.param.name; });

TEST_F(Import, ofAMissingFileSaysSo) {
    openFile(directory_.path() / "nowhere.stl");
    EXPECT_THAT(alerts_, ElementsAre(std::pair("Couldn't load STL",
                             "'nowhere.stl' does not exist. Check its name and folder, and try "
                             "again.")));
}

TEST_F(Import, ofAFolderADeviceOrAPipeSaysSo) {
    const auto folder = directory_.path() / "folder.stl";
    const auto pipe = directory_.path() / "pipe.stl";
    std::filesystem::create_directory(folder);
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    openFile(folder);
    alerts_.erase(alerts_.begin(), alerts_.end() - 1);
    EXPECT_EQ(
        alerts_.front().second, "'folder.stl' is a folder. Choose the STL file of one model.");
    for (const auto& special : {pipe, std::filesystem::path("/dev/zero")}) {
        alerts_.clear();
        openFile(special);
        EXPECT_THAT(alerts_.front().second,
            HasSubstr("is a device, a pipe or a socket. Choose an STL file on disk."));
    }
}

} // namespace
} // namespace ostrella::test
