#include "Views/Chrome/CommandItem.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

TEST(CommandItem, WithoutRulesItIsAlwaysThereAndSaysNothing) {
    int done = 0;
    CommandItem item({.action = [&done] { ++done; }});
    EXPECT_TRUE(item.isEnabled());
    EXPECT_FALSE(item.isChecked());
    EXPECT_TRUE(item.help().isEmpty());
    EXPECT_TRUE(item.label().isEmpty());
    item.trigger();
    EXPECT_EQ(done, 1);
}

TEST(CommandItem, AsksAtTheMomentOfTheTriggerAndNotOfTheScreen) {
    int done = 0;
    bool may = true;
    CommandItem item({.action = [&done] { ++done; }, .isEnabled = [&may] { return may; }});
    may = false;
    EXPECT_TRUE(item.isEnabled());
    item.trigger();
    EXPECT_EQ(done, 0);
    item.refresh();
    EXPECT_FALSE(item.isEnabled());
    may = true;
    item.trigger();
    EXPECT_EQ(done, 1);
}

TEST(CommandItem, TellsOnlyWhatHasChanged) {
    bool on = false;
    QString help = QStringLiteral("a");
    CommandItem item(
        {.action = [] {}, .isChecked = [&on] { return on; }, .help = [&help] { return help; }});
    int changes = 0;
    QObject::connect(&item, &CommandItem::changed, [&changes] { ++changes; });
    item.refresh();
    EXPECT_EQ(changes, 0);
    on = true;
    item.refresh();
    item.refresh();
    EXPECT_EQ(changes, 1);
    EXPECT_TRUE(item.isChecked());
    help = QStringLiteral("b");
    item.refresh();
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(item.help(), QStringLiteral("b"));
}

TEST(CommandItem, WithoutAnActionNothingHappens) {
    CommandItem item({});
    item.trigger();
    EXPECT_TRUE(item.isEnabled());
}

} // namespace
} // namespace ostrella
