// From the menu to the new version in the old one's place.

#include "InstalledApplication.h"

#include "Platform/FileDescriptor.h"

#include <gmock/gmock.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/inotify.h>
#include <unistd.h>

namespace ostrella::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// What comes into the folder `moves` by a new name and what is deleted from the folder `removals`,
/// in the order in which it happens.
class FolderEvents {
public:
    FolderEvents(const std::filesystem::path& moves, const std::filesystem::path& removals)
        : descriptor_(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
        EXPECT_GE(::inotify_add_watch(descriptor_.get(), moves.c_str(), IN_MOVED_TO), 0);
        EXPECT_GE(::inotify_add_watch(descriptor_.get(), removals.c_str(), IN_DELETE), 0);
    }

    std::vector<std::string> names() const {
        std::vector<std::string> all;
        alignas(inotify_event) std::array<char, 4096> buffer;
        ssize_t count = 0;
        while ((count = ::read(descriptor_.get(), buffer.data(), buffer.size())) > 0) {
            for (std::size_t at = 0; at < static_cast<std::size_t>(count);) {
                inotify_event event;
                std::memcpy(&event, buffer.data() + at, sizeof event);
                at += sizeof event;
                all.emplace_back(buffer.data() + at);
                at += event.len;
            }
        }
        return all;
    }

private:
    FileDescriptor descriptor_;
};

class ApplicationUpdateTest : public testing::Test {
protected:
    InstalledApplication application;
};

TEST_F(ApplicationUpdateTest, ComesWhenTheUserQuits) {
    application.release("2.0");
    application.start();
    application.fetchUpdate();
    application.later();
    EXPECT_EQ(application.version(), "1.0") << "nothing is touched while it runs";
    EXPECT_EQ(application.quit(), 0);
    EXPECT_EQ(application.version(), "2.0");
    EXPECT_FALSE(application.successor());
    EXPECT_TRUE(application.hasPrevious()) << "until the new one has come up once";

    application.start();
    EXPECT_TRUE(waitUntil([this] { return !application.hasPrevious(); }));
    EXPECT_EQ(application.quit(), 0);
    EXPECT_EQ(application.version(), "2.0");
}

TEST_F(ApplicationUpdateTest, HasChangedPlacesBeforeAnotherProcessCanServeTheUser) {
    application.release("2.0");
    application.start();
    application.fetchUpdate();
    application.later();
    const FolderEvents events(application.root().parent_path(), application.session());
    EXPECT_EQ(application.quit(), 0);
    const std::string name = application.root().filename().string();
    std::vector<std::string> order;
    for (const std::string& event : events.names()) {
        if (event == name || event.ends_with(".socket")) {
            order.push_back(event == name ? "exchange" : "service ends");
        }
    }
    EXPECT_THAT(order, ElementsAre("exchange", "service ends"));
}

TEST_F(ApplicationUpdateTest, IsNotTakenBackWhereAnotherProcessServesTheUserAlready) {
    application.start();
    EXPECT_TRUE(application.confirmsBesideTheRunningOne());
    EXPECT_EQ(application.quit(), 0);
}

TEST_F(ApplicationUpdateTest, ComesAtOnceByARestart) {
    application.release("2.0");
    application.start();
    application.fetchUpdate();
    application.restart();
    EXPECT_EQ(application.process().finish(), 0);
    EXPECT_EQ(application.version(), "2.0");
    EXPECT_THAT(application.process().errors(), Not(HasSubstr("refused")));
    EXPECT_TRUE(application.successor()) << "it has come up before the old one went";
    EXPECT_TRUE(waitUntil([this] { return !application.hasPrevious(); }));
    EXPECT_TRUE(application.closeSuccessor());
}

TEST_F(ApplicationUpdateTest, GoesAgainWhereItDoesNotComeUp) {
    // It ends at once, except when it is asked for its version.
    application.releaseScript("2.0", "#!/bin/sh\n[ \"$1\" = --version ]\n");
    application.start();
    application.fetchUpdate();
    application.restart();
    EXPECT_EQ(application.process().finish(), 0);
    EXPECT_THAT(application.process().errors(),
        HasSubstr("Update refused · The new version did not start."));
    EXPECT_EQ(application.version(), "1.0");
    EXPECT_FALSE(application.hasPrevious());
    EXPECT_TRUE(application.closeSuccessor()) << "the old one serves the user again";
}

TEST_F(ApplicationUpdateTest, GoesAgainWhereItCameUpNeitherAtItsFirstStartNorAtItsSecond) {
    application.release("2.0");
    application.start();
    application.fetchUpdate();
    application.later();
    EXPECT_EQ(application.quit(), 0);
    ASSERT_EQ(application.version(), "2.0");
    application.startInVain();
    EXPECT_EQ(application.version(), "2.0") << "it may have been the machine's fault";
    application.start();
    EXPECT_EQ(application.version(), "1.0") << "the process has become the version before";
    EXPECT_FALSE(application.hasPrevious());
    EXPECT_EQ(application.quit(), 0);
}

} // namespace
} // namespace ostrella::test
