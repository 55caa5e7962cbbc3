#include "Models/ParameterTable.h"
#include "WholeWindow.h"

#include <QClipboard>
#include <QGuiApplication>

namespace ostrella::test {
namespace {

class Fields : public WholeWindow {
protected:
    double velocity() const { return app.parameters.velocity(); }
    /// What stands in the field after a text was typed in place of the old one and taken.
    std::string take(const std::string& text) {
        enter("Velocity");
        type(text);
        user->type(Qt::Key_Return);
        return textOf("Velocity");
    }
};

TEST_F(Fields, TakeANumber) {
    EXPECT_EQ(take("62.5"), "62.5");
    EXPECT_EQ(velocity(), 62.5);
}

TEST_F(Fields, BringWhatIsOutOfRangeIntoIt) {
    const double most = ParameterTable::velocity.maximum;
    take("999999");
    EXPECT_EQ(velocity(), most);
    EXPECT_EQ(take("1e400"), "0.01");
    EXPECT_EQ(velocity(), ParameterTable::velocity.minimum);
}

TEST_F(Fields, KeepTheOldValueForWhatIsNoNumber) {
    const double before = velocity();
    const std::string shown = textOf("Velocity");
    for (const char* text : {"abc", "", "62,5", "1.2.3", "nan", "-"}) {
        EXPECT_EQ(take(text), shown) << text;
        EXPECT_EQ(velocity(), before) << text;
    }
}

TEST_F(Fields, AnEmptyFieldIsPutBackWhenTheKeyboardLeaves) {
    const std::string shown = textOf("Velocity");
    enter("Velocity");
    user->type(Qt::Key_Delete);
    EXPECT_EQ(textOf("Velocity"), "");
    user->type(Qt::Key_Tab);
    EXPECT_EQ(textOf("Velocity"), shown);
}

TEST_F(Fields, NeitherWheelNorArrowsChangeThem) {
    const double before = velocity();
    user->moveTo(frame(field("Velocity")).center());
    user->wheel(3);
    user->wheel(-3);
    enter("Velocity");
    user->wheel(2);
    user->type(Qt::Key_Up);
    user->type(Qt::Key_Down);
    user->type(Qt::Key_Return);
    EXPECT_EQ(velocity(), before);
    const auto regime = app.parameters.regime();
    user->moveTo(middleOf(q("Regime"), QAccessible::ComboBox));
    user->wheel(-2);
    EXPECT_EQ(app.parameters.regime(), regime);
}

TEST_F(Fields, CopySelectAllCutAndPasteAreTheirs) {
    take("62.5");
    enter("Velocity");
    user->type(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("62.5"));
    enter("Angle of attack");
    user->type(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(textOf("Angle of attack"), "62.5");
    user->type(Qt::Key_A, Qt::ControlModifier);
    user->type(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(textOf("Angle of attack"), "");
    user->type(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(textOf("Angle of attack"), "62.5");
    user->type(Qt::Key_Escape);
}

TEST_F(Fields, APastedSentenceIsNoNumber) {
    const double before = velocity();
    QGuiApplication::clipboard()->setText(q("fast,\nvery fast"));
    enter("Velocity");
    user->type(Qt::Key_V, Qt::ControlModifier);
    user->type(Qt::Key_Return);
    EXPECT_EQ(velocity(), before);
}

} // namespace
} // namespace ostrella::test
