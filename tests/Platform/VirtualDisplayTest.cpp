#include "Platform/VirtualDisplay.h"
#include "Platform/FileDescriptor.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <optional>
#include <string>
#include <tuple>

#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>

namespace ostrella {
namespace {

/// Sets a variable of the environment as long as it lives.
class Variable {
public:
    Variable(const char* name, const char* value) : name_(name) {
        if (const char* const present = std::getenv(name)) {
            before_ = present;
        }
        setenv(name, value, 1);
    }
    ~Variable() {
        if (before_) {
            setenv(name_, before_->c_str(), 1);
        } else {
            unsetenv(name_);
        }
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    const char* name_;
    std::optional<std::string> before_;
};

/// What tells a file from a later one of the same name; nothing if there is none.
std::optional<std::tuple<ino_t, time_t, long>> identityOf(const std::string& file) {
    struct stat status {};
    if (stat(file.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return std::tuple(status.st_ino, status.st_ctim.tv_sec, status.st_ctim.tv_nsec);
}

TEST(VirtualDisplay, AnswersAsLongAsItIsThereAndLeavesNothing) {
    auto display = VirtualDisplay::start();
    ASSERT_TRUE(display);
    const std::string name = display->name();
    ASSERT_TRUE(name.starts_with(":"));
    const std::string socket = "/tmp/.X11-unix/X" + name.substr(1);
    const auto own = identityOf(socket);
    EXPECT_TRUE(own);
    const Variable variable("DISPLAY", name.c_str());
    EXPECT_TRUE(VirtualDisplay::anotherAnswers());
    display.reset();
    // Somebody else's server may take the number at once.
    const bool answers = VirtualDisplay::anotherAnswers();
    const auto next = identityOf(socket);
    EXPECT_NE(next, own);
    if (!next) {
        EXPECT_FALSE(answers);
    }
}

TEST(VirtualDisplay, TwoStandBesideOneAnother) {
    const auto one = VirtualDisplay::start();
    const auto other = VirtualDisplay::start();
    ASSERT_TRUE(one && other);
    EXPECT_NE(one->name(), other->name());
    const Variable variable("DISPLAY", other->name().c_str());
    EXPECT_TRUE(VirtualDisplay::anotherAnswers());
}

TEST(VirtualDisplay, NoneAnswersWhereNoneIsNamed) {
    for (const char* name : {"", ":4711", "nonsense"}) {
        const Variable variable("DISPLAY", name);
        EXPECT_FALSE(VirtualDisplay::anotherAnswers()) << name;
    }
}

TEST(VirtualDisplay, NoneAnswersWhereTheServerHangs) {
    // A port that takes connections and says nothing; the display's number is the port's above
    // 6000.
    const FileDescriptor deaf(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const plain = reinterpret_cast<sockaddr*>(&address);
    ASSERT_EQ(bind(deaf.get(), plain, size), 0);
    ASSERT_EQ(listen(deaf.get(), 1), 0);
    ASSERT_EQ(getsockname(deaf.get(), plain, &size), 0);
    const int number = ntohs(address.sin_port) - 6000;
    ASSERT_GT(number, 0);
    const Variable variable("DISPLAY", ("127.0.0.1:" + std::to_string(number)).c_str());
    EXPECT_FALSE(VirtualDisplay::anotherAnswers(std::chrono::milliseconds(200)));
}

TEST(VirtualDisplay, IsNoneWhereThereIsNoSuchProgram) {
    const Variable variable("PATH", "/nonexistent");
    EXPECT_EQ(VirtualDisplay::start(), nullptr);
}

} // namespace
} // namespace ostrella
