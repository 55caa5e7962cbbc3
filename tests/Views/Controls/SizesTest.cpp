#include "Views/Controls/ControlsWindow.h"

namespace ostrella::test {

struct Size {
    const char* qml;
    int height;
    int width = 0; ///< 0: by what is in it
    int grown = 0; ///< at text half as large again; 0: half as high again
};

class SizesTest : public ControlsWindow, public testing::WithParamInterface<Size> {};

TEST_P(SizesTest, isAsHighAsItsKind) {
    show(QByteArray(GetParam().qml).replace('{', "{ objectName: \"it\"; "));
    EXPECT_EQ(item("it")->height(), GetParam().height);
    const int width = GetParam().width;
    EXPECT_EQ(item("it")->width(), width != 0 ? width : item("it")->implicitWidth());
}

TEST_P(SizesTest, growsWithTheText) {
    theme.setTextScale(1.5);
    show(QByteArray(GetParam().qml).replace('{', "{ objectName: \"it\"; "));
    const int grown = GetParam().grown;
    EXPECT_EQ(item("it")->height(), grown != 0 ? grown : GetParam().height * 3 / 2);
}

INSTANTIATE_TEST_SUITE_P(Components, SizesTest,
    testing::Values(Size{"BrandButton { text: \"Done\" }", 28},
        Size{"BrandButton { small: true; text: \"Done\" }", 24},
        Size{"HeroButton { text: \"Run\" }", 40}, Size{"ToolbarCluster {}", 44},
        Size{"ToolbarButton { text: \"Cp\"; symbol: \"wind\" }", 40, 52, 62},
        Size{"FilterChip { text: \"all\" }", 20}, Size{"KeyCap { keys: \"R\" }", 18, 20},
        Size{"BrandSegmentedControl {}", 26}, Size{"CardRow { label: \"File\" }", 24},
        Size{"SidebarRow { title: \"File\" }", 32}, Size{"SidebarNumberField {}", 24, 120},
        Size{"SidebarSelect { options: [\"a\"] }", 24}, Size{"SidebarSwitch {}", 18, 32}));

class Widths : public ControlsWindow {};

TEST_F(Widths, hairlinesAreOneDevicePixel) {
    show("Hairline { objectName: \"it\"; width: 100 }");
    EXPECT_EQ(item("it")->height() * window->effectiveDevicePixelRatio(), 1);
}

TEST_F(Widths, cardsAreAsLargeAsWhatIsInThemAndTheirPadding) {
    show("FloatingCard { objectName: \"it\"; padding: 6; Item { width: 50; height: 28 } }");
    EXPECT_EQ(item("it")->width(), 62);
    EXPECT_EQ(item("it")->height(), 40);
}

TEST_F(Widths, theChosenSegmentMovesNoOther) {
    show("BrandSegmentedControl { objectName: \"it\"; selection: 1; options: "
         "[{ value: 1, title: \"Log\" }, { value: 2, title: \"Convergence\" }] }");
    const qreal before = item("it")->width();
    item("it")->setProperty("selection", 2);
    EXPECT_EQ(item("it")->width(), before);
}

} // namespace ostrella::test
