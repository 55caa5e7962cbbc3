#include "PanelWindow.h"

#include <QClipboard>
#include <QGuiApplication>

namespace ostrella::test {
namespace {

class LogSelecting : public PanelWindow {
protected:
    LogSelecting() {
        this->PanelBench::log("alpha beta gamma", Level::ok);
        this->PanelBench::log("delta", Level::warn);
        this->PanelBench::log("epsilon zeta", Level::su2);
        settle();
        QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    }

    /// The boot lines come first.
    QPointF inRow(std::size_t row, qreal x) const {
        for (const LogScroll::Row& visible : log().scroll().visible()) {
            if (visible.row == row) {
                return inLog({x, visible.top + visible.height / 2});
            }
        }
        throw std::runtime_error("the row is not in view");
    }
    /// Left edge of a letter of the text.
    static qreal letter(int index) { return 16 + 62 + 74 + 7.2 * index; }
    std::string copied() {
        user->type(Qt::Key_C, Qt::ControlModifier);
        return QGuiApplication::clipboard()->text().toStdString();
    }
    std::string line(std::size_t row) const { return LogRow::plainText((*log().lines())[row]); }
};

constexpr std::size_t alpha = 2;

TEST_F(LogSelecting, takesAPartOfALine) {
    user->drag(inRow(alpha, letter(6)), inRow(alpha, letter(10)));
    EXPECT_EQ(copied(), "beta");
}

TEST_F(LogSelecting, takesWhatLiesBetweenTwoPlacesOfDifferentRows) {
    const std::string expected = line(alpha).substr(line(alpha).size() - 5) + "\n" +
                                 line(alpha + 1) + "\n" +
                                 line(alpha + 2).substr(0, line(alpha + 2).size() - 5);
    user->drag(inRow(alpha, letter(11)), inRow(alpha + 2, letter(7)));
    EXPECT_EQ(copied(), expected);
    user->drag(inRow(alpha + 2, letter(7)), inRow(alpha, letter(11)));
    EXPECT_EQ(copied(), expected) << "from its end to its beginning";
}

TEST_F(LogSelecting, takesTagsAndTimesAsWell) {
    user->drag(inRow(alpha, 10), inRow(alpha, 70));
    EXPECT_EQ(copied(), "[OK]");
}

TEST_F(LogSelecting, takesAWordWithADoubleClick) {
    user->doubleClick(inRow(alpha, letter(7)));
    EXPECT_EQ(copied(), "beta");
}

TEST_F(LogSelecting, growsWithAShiftClick) {
    user->click(inRow(alpha, letter(0)));
    user->click(inRow(alpha + 1, letter(5)), {.modifiers = Qt::ShiftModifier});
    EXPECT_EQ(copied(), "alpha beta gamma\n" + line(alpha + 1));
}

TEST_F(LogSelecting, takesEveryLineWithControlA) {
    user->click(inRow(alpha, letter(0)));
    user->type(Qt::Key_A, Qt::ControlModifier);
    std::string all;
    for (std::size_t row = 0; row < log().lines()->size(); ++row) {
        all += (row > 0 ? "\n" : "") + line(row);
    }
    EXPECT_EQ(copied(), all);
}

TEST_F(LogSelecting, leavesTheClipboardAloneWithNothingSelected) {
    user->drag(inRow(alpha, letter(6)), inRow(alpha, letter(10)));
    EXPECT_TRUE(log().hasSelection());
    user->click(inRow(alpha, letter(3)));
    EXPECT_FALSE(log().hasSelection());
    EXPECT_EQ(copied(), "before");
}

TEST_F(LogSelecting, scrollsWhileADragGoesBeyondItsEdge) {
    logLines(200);
    settle();
    user->moveTo(inLog({300, 60}));
    user->press();
    user->moveTo(inLog({300, -30}), 4);
    EXPECT_TRUE(waitUntil([this] { return *log().scroll().bottomRow() < 150; }));
    user->release();
    const std::string text = copied();
    EXPECT_GT(std::count(text.begin(), text.end(), '\n'), 20);
}

} // namespace
} // namespace ostrella::test
