#include "Views/Format/AppLinks.h"
#include "Views/Format/ConvergenceHeader.h"
#include "Views/Format/PanelText.h"
#include "Views/Format/SettingsFormat.h"
#include "Views/Format/WelcomeText.h"
#include "Views/Format/WindowTitle.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

TEST(WindowTitle, NamesTheModel) {
    EXPECT_EQ(WindowTitle::make(std::nullopt), "Ostrella");
    EXPECT_EQ(WindowTitle::make("/models/wing.stl"), "wing.stl · Ostrella");
    EXPECT_EQ(WindowTitle::make("/models/"), "Ostrella");
    EXPECT_EQ(WindowTitle::make(""), "Ostrella");
}

TEST(SettingsFormat, CountHasOrdinarySpaces) {
    EXPECT_EQ(SettingsFormat::count(1234567), "1 234 567");
    EXPECT_EQ(SettingsFormat::count(999), "999");
    EXPECT_EQ(SettingsFormat::count(-1000), "-1 000");
}

TEST(ConvergenceHeader, TellsThePhase) {
    EXPECT_EQ(ConvergenceHeader::text(RunPhase::idle(), 1200), "1\u00A0200 iter");
    EXPECT_EQ(ConvergenceHeader::text(RunPhase::meshing(), 1), "1 iter · solving");
    EXPECT_EQ(ConvergenceHeader::text(RunPhase::solving(), 118), "118 iter · solving");
    EXPECT_EQ(ConvergenceHeader::text(RunPhase::postProcessing(), 118), "118 iter · processing");
    EXPECT_EQ(ConvergenceHeader::text(RunPhase::cancelled(), 118), "118 iter · cancelled");
    EXPECT_EQ(ConvergenceHeader::text(RunPhase::failed("mesh", "x"), 118), "118 iter · failed");
    EXPECT_EQ(ConvergenceHeader::text(RunPhase::finished(true), 118), "118 iter · converged");
    EXPECT_EQ(ConvergenceHeader::text(RunPhase::finished(false), 118), "118 iter · not converged");
}

TEST(ConvergenceHeader, IsEmptyWithoutIterations) {
    for (const RunPhase& phase :
        {RunPhase::idle(), RunPhase::solving(), RunPhase::finished(true)}) {
        EXPECT_EQ(ConvergenceHeader::text(phase, std::nullopt), "");
    }
}

TEST(PanelText, WhatMattersLeastGoesFirst) {
    using Forms = std::vector<std::string>;
    PanelText::HeaderInput input;
    input.lineCount = 1234;
    EXPECT_EQ(PanelText::rightForms(input),
        (Forms{"1\u00A0234 lines · auto-scroll", "1\u00A0234 lines", ""}));
    input.isFollowingLog = false;
    EXPECT_EQ(PanelText::rightForms(input), (Forms{"1\u00A0234 lines", ""}));
    input.tab = PanelText::Tab::convergence;
    EXPECT_EQ(PanelText::rightForms(input), Forms{""});
    input.phase = RunPhase::finished(false);
    input.latestIteration = 117;
    EXPECT_EQ(PanelText::rightForms(input), (Forms{"118 iter · not converged", "118 iter", ""}));
}

TEST(PanelText, TitlesOfTheTabs) {
    EXPECT_EQ(PanelText::title(PanelText::Tab::log), "Log");
    EXPECT_EQ(PanelText::title(PanelText::Tab::convergence), "Convergence");
}

TEST(PanelText, AtTheRightOfTheHeader) {
    PanelText::HeaderInput input;
    input.lineCount = 1234;
    EXPECT_EQ(PanelText::rightText(input), "1\u00A0234 lines · auto-scroll");
    input.isFollowingLog = false;
    EXPECT_EQ(PanelText::rightText(input), "1\u00A0234 lines");
    input.tab = PanelText::Tab::convergence;
    EXPECT_EQ(PanelText::rightText(input), "");
    input.phase = RunPhase::finished(false);
    input.latestIteration = 199;
    EXPECT_EQ(PanelText::rightText(input), "200 iter · not converged");
    input.summary = RunSummary();
    EXPECT_EQ(PanelText::rightText(input), "200 iter · not converged");
    input.summary->iterations = 150;
    EXPECT_EQ(PanelText::rightText(input), "150 iter · not converged");
}

TEST(WelcomeText, NamesTheMachine) {
    EXPECT_EQ(WelcomeText::tagLine(PlatformWords::mac()), "Aerodynamic analysis on your Mac.");
    EXPECT_EQ(WelcomeText::tagLine(PlatformWords::freedesktop()),
        "Aerodynamic analysis on your computer.");
}

TEST(WelcomeText, SampleTiles) {
    EXPECT_EQ(WelcomeText::sampleSymbol("sphere"), "globe");
    EXPECT_EQ(WelcomeText::sampleSymbol("rounded_box"), "cube");
    EXPECT_EQ(WelcomeText::sampleSymbol("simple_wing"), "airplane");
    EXPECT_EQ(WelcomeText::sampleSymbol("teapot"), "cube.transparent");
    EXPECT_EQ(WelcomeText::facetsText(19516), "19\u00A0516 facets");
    EXPECT_EQ(WelcomeText::facetsText(std::nullopt), "");
    EXPECT_EQ(WelcomeText::sampleHelp("Simple Wing"), "Load the Simple Wing sample");
    EXPECT_EQ(WelcomeText::sampleLabel("Simple Wing"), "Load sample Simple Wing");
}

TEST(AppLinks, AddressesForPeople) {
    EXPECT_EQ(AppLinks::shownAddress("https://ostrella.example/"), "ostrella.example");
    EXPECT_EQ(AppLinks::shownAddress("https://ostrella.example/help"), "ostrella.example/help");
    EXPECT_EQ(AppLinks::shownAddress("ostrella.example"), "ostrella.example");
    EXPECT_EQ(AppLinks::shownAddress(""), "");
}

TEST(AppLinks, TheHelpItemNamesTheSite) {
    EXPECT_FALSE(AppLinks::help.empty());
    EXPECT_EQ(
        AppLinks::helpToolTip(), "Help on " + std::string(AppLinks::shownAddress(AppLinks::help)));
}

} // namespace
} // namespace ostrella
