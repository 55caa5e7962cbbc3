#include "Platform/VirtualDisplay.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

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

TEST(VirtualDisplay, AnswersAsLongAsItIsThereAndLeavesNothing) {
    std::filesystem::path socket;
    std::string name;
    {
        const auto display = VirtualDisplay::start();
        ASSERT_TRUE(display);
        name = display->name();
        ASSERT_TRUE(name.starts_with(":"));
        socket = "/tmp/.X11-unix/X" + name.substr(1);
        EXPECT_TRUE(std::filesystem::exists(socket));
    }
    EXPECT_FALSE(std::filesystem::exists(socket));
    EXPECT_FALSE(std::filesystem::exists("/tmp/.X" + name.substr(1) + "-lock"));
    const Variable variable("DISPLAY", name.c_str());
    EXPECT_FALSE(VirtualDisplay::anotherAnswers());
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

TEST(VirtualDisplay, IsNoneWhereThereIsNoSuchProgram) {
    const Variable variable("PATH", "/nonexistent");
    EXPECT_EQ(VirtualDisplay::start(), nullptr);
}

} // namespace
} // namespace ostrella
