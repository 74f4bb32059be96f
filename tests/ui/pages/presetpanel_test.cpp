#include "tests/ui/pages/desk.hpp"

#include "ui/kit/textfield.hpp"

#include <gtest/gtest.h>

#include <QClipboard>

using namespace Tests;

namespace {

/// A user at the presets of a chain.
struct Presets : Desk {
    Presets()
        : Desk("MAIN", 2) {}

    QString chosen() { return readOut("Preset"); }
    Kit::TextField& name() { return find<Kit::TextField>("Nome do preset"); }
    void chooseNext() { press("Preset", Qt::Key_Down); }
    void save(const QString& as) {
        name().selectAll();
        QTest::keyClicks(&name(), as);
        click("SALVAR");
    }
};

}  // namespace

TEST(PresetPanelTest, StoresRecallsAndDeletesOnAllSpeakers) {
    Presets presets;
    for (const auto& [chosen, stored] : {std::pair{"1 · vazio", false}, {"1 · Preset 1", true}}) {
        EXPECT_EQ(presets.chosen(), chosen);
        EXPECT_EQ(presets.find("CARREGAR").isEnabled(), stored);
        EXPECT_EQ(presets.find("APAGAR").isEnabled(), stored);
        if (!stored) presets.save("");
    }
    presets.chooseNext();
    presets.save("Igreja");
    EXPECT_EQ(presets.chosen(), "2 · Igreja");
    presets.press("Out 1", Qt::Key_Down);
    presets.click("CARREGAR");
    EXPECT_TRUE(presets.lit("CARREGAR"));
    EXPECT_EQ(presets.readOut("Out 1"), "0.0 dB");
    presets.click("APAGAR");
    EXPECT_EQ(presets.chosen(), "2 · vazio");
    EXPECT_TRUE(presets.line->board(1).preset(1) && !presets.line->board(1).preset(2));
    for (int i = 0; i < 40; ++i)
        presets.chooseNext();
    EXPECT_EQ(presets.chosen(), "31 · vazio");
}

TEST(PresetPanelTest, FollowsTheFocusedSpeakerUnlessTheUserHasBegun) {
    Presets presets;
    presets.model->target = 2;
    presets.chooseNext();
    presets.save("Rua");
    presets.click("CARREGAR");
    presets.model->target = 1;
    presets.settle();
    EXPECT_EQ(presets.chosen(), "2 · vazio") << "the first speaker reports no current preset";
    presets.chooseNext();
    presets.model->target = 2;
    presets.settle();
    EXPECT_EQ(presets.chosen() + presets.name().text(), "2 · RuaRua");
    presets.chooseNext();
    EXPECT_EQ(presets.name().text(), "");
    EXPECT_FALSE(presets.lit("CARREGAR"));
    presets.click("LIMITER");
    presets.click("MAIN");
    EXPECT_EQ(presets.chosen(), "2 · Rua") << "the panel is shown again";

    presets.model->target = 1;
    presets.model->target = 2;
    QTest::keyClicks(&presets.name(), " larga");
    presets.settle();
    EXPECT_EQ(presets.name().text(), "Rua larga");
}

TEST(PresetPanelTest, WorksOnceForTwoClicksAndShowsWhatTheSpeakersHold) {
    Presets presets;
    auto& name = presets.name();
    name.setText("Igreja São José ã");
    name.setCursorPosition(0);
    QApplication::clipboard()->setText("ç");
    name.paste();
    EXPECT_EQ(name.text(), "çIgreja São José ") << "20 bytes, whole letters";
    EXPECT_EQ(name.cursorPosition(), 1);
    auto& save = presets.find("SALVAR");
    QTest::mouseClick(&save, Qt::LeftButton);
    QTest::mouseClick(&save, Qt::LeftButton);
    ASSERT_TRUE(presets.until([&] { return presets.shows("Salvando o preset 1 na caixa 02…"); }));
    EXPECT_FALSE(save.isEnabled());
    EXPECT_EQ(presets.view.focusWidget(), nullptr) << "no other control takes the next key";
    presets.settle();
    EXPECT_EQ(presets.sentOf(Fun::presetSave).size(), 2);
    EXPECT_TRUE(presets.model->report.value().text == "Preset 1 salvo em 2 caixas");
    EXPECT_EQ(presets.view.focusWidget(), &save);
}
