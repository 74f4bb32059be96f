#include "tests/ui/pages/desk.hpp"

#include "ui/kit/textfield.hpp"

#include <gtest/gtest.h>

using namespace Tests;

namespace {

/// A user at the presets of a chain.
struct Presets : Desk {
    explicit Presets(std::size_t boards = 1)
        : Desk(boards) {
        goTo("MAIN");
    }

    Kit::TextField& name() { return find<Kit::TextField>("Nome do preset"); }
    void chooseNext() { press("Preset", Qt::Key_Down); }
    void type(const QString& text) {
        name().selectAll();
        QTest::keyClicks(&name(), text);
    }
};

}  // namespace

TEST(PresetPanelTest, AnEmptySlotOffersOnlySaving) {
    Presets presets;
    EXPECT_EQ(presets.readOut("Preset"), "1 · vazio");
    EXPECT_FALSE(presets.find("CARREGAR").isEnabled());
    EXPECT_FALSE(presets.find("APAGAR").isEnabled());
    presets.click("SALVAR");
    EXPECT_EQ(presets.readOut("Preset"), "1 · Preset 1");
    EXPECT_EQ(presets.name().text(), "");
    EXPECT_TRUE(presets.find("CARREGAR").isEnabled());
    EXPECT_TRUE(presets.find("APAGAR").isEnabled());
    for (int i = 0; i < 40; ++i)
        presets.chooseNext();
    EXPECT_EQ(presets.readOut("Preset"), "31 · vazio");
}

TEST(PresetPanelTest, StoresRecallsAndDeletesOnAllSpeakers) {
    Presets presets(2);
    presets.chooseNext();
    presets.type("Igreja");
    presets.click("SALVAR");
    EXPECT_EQ(presets.readOut("Preset"), "2 · Igreja");
    presets.press("Out 1", Qt::Key_Down);
    presets.click("CARREGAR");
    EXPECT_TRUE(presets.lit("CARREGAR"));
    EXPECT_EQ(presets.readOut("Out 1"), "0.0 dB");
    EXPECT_EQ(presets.held<GainValue>(1, ModuleKind::gain, "Out0").db, 0);
    presets.click("APAGAR");
    EXPECT_EQ(presets.readOut("Preset"), "2 · vazio");
    EXPECT_FALSE(presets.line->board(1).preset(2).has_value());
}

TEST(PresetPanelTest, FollowsTheCurrentPresetOfTheFocusedSpeaker) {
    Presets presets(2);
    presets.model->target = 2;
    presets.chooseNext();
    presets.chooseNext();
    presets.type("Rua");
    presets.click("SALVAR");
    presets.click("CARREGAR");
    presets.model->target = 1;
    presets.settle();
    EXPECT_EQ(presets.readOut("Preset"), "3 · vazio") << "the first speaker reports no current preset";
    presets.chooseNext();
    EXPECT_EQ(presets.name().text(), "");
    presets.model->target = 2;
    presets.settle();
    EXPECT_EQ(presets.readOut("Preset"), "3 · Rua");
    EXPECT_EQ(presets.name().text(), "Rua");
    presets.chooseNext();
    presets.click("LIMITER");
    presets.click("MAIN");
    EXPECT_EQ(presets.readOut("Preset"), "3 · Rua") << "the panel is shown again";
}

TEST(PresetPanelTest, AListThatArrivesLateKeepsTheTypedNameAndTheChosenSlot) {
    Presets presets(2);
    presets.click("SALVAR");
    presets.click("CARREGAR");
    presets.model->target = 2;
    presets.type("Meu som");
    presets.settle();
    EXPECT_EQ(presets.name().text(), "Meu som");
    presets.model->target = 1;
    QTest::keyClick(&presets.find<Kit::Control>("Preset"), Qt::Key_Down);
    presets.settle();
    EXPECT_EQ(presets.readOut("Preset"), "2 · vazio");
}

TEST(PresetPanelTest, MayGoWhileItIsListing) {
    Presets presets;
    auto second = std::make_unique<ContentView>(*presets.model, true, nullptr);
    second->show();
    second.reset();
    presets.settle();
    EXPECT_EQ(presets.line->summary().faults, std::vector<std::string>{});
}
