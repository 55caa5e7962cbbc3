#include "Views/Format/NumberField.h"

#include "Models/ParameterTable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace ostrella {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
const double nan = std::nan("");

const NumberField velocity = NumberField::of(ParameterTable::velocity, 1, 4);
const NumberField angle = NumberField::of(ParameterTable::rotationX, 1, 2);

TEST(NumberField, TheRangeIsTheParameters) {
    EXPECT_EQ(velocity.from, 0.01);
    EXPECT_EQ(velocity.to, 500);
    EXPECT_EQ(angle.from, -180);
    EXPECT_EQ(angle.to, 180);
}

TEST(NumberField, AFiniteValueIsClampedAndAnyOtherIsTheLowerBound) {
    EXPECT_EQ(velocity.inRange(600), 500);
    EXPECT_EQ(velocity.inRange(-1), 0.01);
    EXPECT_EQ(velocity.inRange(50), 50);
    EXPECT_EQ(velocity.inRange(nan), 0.01);
    EXPECT_EQ(velocity.inRange(infinity), 0.01);
    EXPECT_EQ(velocity.inRange(-infinity), 0.01);
}

TEST(NumberField, TextHasAsManyDigitsAsItNeeds) {
    EXPECT_EQ(velocity.text(50), "50.0");
    EXPECT_EQ(velocity.text(1.225), "1.225");
    EXPECT_EQ(velocity.text(1.23456), "1.2346");
    EXPECT_EQ(velocity.text(1.20001), "1.2");
    EXPECT_EQ(angle.text(-90), "-90.0");
    EXPECT_EQ(angle.text(12.345678), "12.35");
    EXPECT_EQ(angle.text(-0.001), "0.0");
}

TEST(NumberField, TextOfAValueOutOfRangeIsOneOfTheRange) {
    EXPECT_EQ(velocity.text(nan), "0.01");
    EXPECT_EQ(velocity.text(1e9), "500.0");
}

TEST(NumberField, TextHasNoGroups) {
    EXPECT_EQ((NumberField{0, 1e7, 0, 2}.text(1234567.5)), "1234567.5");
    EXPECT_EQ((NumberField{0, 1e7, 0, 2}.text(1200)), "1200");
    EXPECT_EQ((NumberField{0, 1e7, 0, 0}.text(1200)), "1200");
}

TEST(NumberField, NumbersAreReadWithAPointASignAndAnExponent) {
    EXPECT_EQ(NumberField::number("12.5"), 12.5);
    EXPECT_EQ(NumberField::number("-12.5"), -12.5);
    EXPECT_EQ(NumberField::number("+12.5"), 12.5);
    EXPECT_EQ(NumberField::number(".5"), 0.5);
    EXPECT_EQ(NumberField::number("5."), 5);
    EXPECT_EQ(NumberField::number("1e2"), 100);
    EXPECT_EQ(NumberField::number("1.5E-2"), 0.015);
    EXPECT_EQ(NumberField::number("007"), 7);
}

TEST(NumberField, BlanksAroundANumberDoNotMatter) {
    EXPECT_EQ(NumberField::number("  12.5\t"), 12.5);
    EXPECT_EQ(NumberField::number("\u00A012.5\u2009"), 12.5);
}

TEST(NumberField, WhatIsNoNumberIsRefused) {
    for (const char* text : {"", "  ", "abc", "12a", "1,5", "1 000", "1\u00A0000", "--1", "+-1",
             "-+1", "++1", "+", "-", ".", "e5", "1e", "1e+", "0x10", "nan", "NaN", "inf",
             "Infinity", "1.2.3", "12°", "50 m/s", "1\n2", "½", "\xFF", "−5"}) {
        EXPECT_EQ(NumberField::number(text), std::nullopt) << text;
        EXPECT_EQ(velocity.value(text), std::nullopt) << text;
    }
}

TEST(NumberField, NumbersBeyondTheDoubleAreNotFinite) {
    EXPECT_EQ(NumberField::number("1e400"), infinity);
    EXPECT_EQ(NumberField::number("-1e400"), -infinity);
    EXPECT_EQ(NumberField::number("1e-400"), 0);
    EXPECT_EQ(velocity.value("1e400"), 0.01);
    EXPECT_EQ(NumberField::number("1" + std::string(400, '0')), infinity);
}

TEST(NumberField, ATypedValueIsBroughtIntoTheRange) {
    EXPECT_EQ(velocity.value("600"), 500);
    EXPECT_EQ(velocity.value("0"), 0.01);
    EXPECT_EQ(velocity.value("+42"), 42);
    EXPECT_EQ(angle.value("-181"), -180);
}

} // namespace
} // namespace ostrella
