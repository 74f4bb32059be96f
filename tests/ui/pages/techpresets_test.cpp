#include "tests/ui/pages/desk.hpp"

#include "ui/kit/textfield.hpp"
#include "ui/kit/wellmenu.hpp"

#include <gtest/gtest.h>

using namespace Tests;

namespace {

/// A user at the presets of a chain.
struct Presets : Desk {
    explicit Presets(std::size_t boards = 1)
        : Desk(chainOf(boards)) {
        connectByHand();
        model->technical = true;
        settle();
    }

    QString shown() { return find<Kit::MenuButton>("Preset").valueText(); }
    QString name() { return field().text(); }
    Kit::TextField& field() { return find<Kit::TextField>("Nome do preset"); }
    bool enabled(const QString& key) { return find(key).isEnabled(); }

    void chooseNext() { QTest::keyClick(&find<Kit::MenuButton>("Preset"), Qt::Key_Down); }
    void type(const QString& text) {
        field().selectAll();
        QTest::keyClicks(&field(), text);
    }
    void leaveAndReturn() {
        click("LIMITER");
        click("MAIN");
    }
};

}  // namespace

TEST(PresetPanelTest, WithoutPresetsOnlySavingIsOffered) {
    Presets presets;
    EXPECT_EQ(presets.shown(), "1 · vazio");
    EXPECT_EQ(presets.name(), "");
    EXPECT_FALSE(presets.enabled("CARREGAR"));
    EXPECT_FALSE(presets.enabled("APAGAR"));
    presets.click("SALVAR");
    EXPECT_EQ(presets.shown(), "1 · Preset 1");
    EXPECT_TRUE(presets.enabled("CARREGAR"));
    EXPECT_TRUE(presets.line->board(0).preset(1).has_value());
}

TEST(PresetPanelTest, StoresRecallsAndDeletesOnAllSpeakers) {
    Presets presets(2);
    presets.chooseNext();
    presets.type("Igreja");
    presets.click("SALVAR");
    EXPECT_EQ(presets.shown(), "2 · Igreja");
    QTest::keyClick(&presets.find<Kit::ValueControl>("Out 1"), Qt::Key_Down);
    presets.settle();
    EXPECT_EQ(presets.readOut("Out 1"), "-0.5 dB");
    presets.click("CARREGAR");
    EXPECT_EQ(presets.readOut("Out 1"), "0.0 dB");
    EXPECT_TRUE(presets.lit("CARREGAR"));
    EXPECT_EQ(presets.held<GainValue>(1, ModuleKind::gain, "Out0").db, 0);
    presets.click("APAGAR");
    EXPECT_EQ(presets.shown(), "2 · vazio");
    EXPECT_FALSE(presets.line->board(1).preset(2).has_value());
}

TEST(PresetPanelTest, GoesToTheCurrentPresetOfTheSpeakerThatIsLookedAt) {
    Presets presets(2);
    presets.model->target = 2;
    presets.chooseNext();
    presets.chooseNext();
    presets.type("Rua");
    presets.click("SALVAR");
    presets.click("CARREGAR");
    presets.model->target = 1;
    presets.settle();
    EXPECT_EQ(presets.shown(), "3 · vazio") << "the first speaker has no current one to go to";
    presets.chooseNext();
    presets.model->target = 2;
    presets.settle();
    EXPECT_EQ(presets.shown(), "3 · Rua");
    EXPECT_EQ(presets.name(), "Rua");
    presets.chooseNext();
    presets.leaveAndReturn();
    EXPECT_EQ(presets.shown(), "3 · Rua");
}

TEST(PresetPanelTest, WhatTheUserHasBegunToTypeStays) {
    Presets presets(2);
    presets.click("SALVAR");
    presets.click("CARREGAR");
    presets.model->target = 2;
    presets.type("Meu som");
    presets.settle();
    EXPECT_EQ(presets.name(), "Meu som");
    presets.chooseNext();
    EXPECT_EQ(presets.name(), "");
}

TEST(PresetPanelTest, MayGoWhileItIsListing) {
    auto presets = std::make_unique<Desk>(chainOf(1));
    presets->connectByHand();
    auto page = std::make_unique<ContentView>(*presets->model, true, nullptr);
    presets->model->technical = true;
    page->show();
    page.reset();
    presets->settle();
    presets->model->target = 1;
    presets->settle();
}
