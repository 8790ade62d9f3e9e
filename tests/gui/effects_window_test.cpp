#include "song/effect_records.h"
#include "support/window_world.h"
#include "widgets/frm_fx_config.h"

#include <QCheckBox>
#include <QSlider>
#include <QTabWidget>

using namespace tonvex;

namespace {

constexpr std::int32_t CHANNEL = FIRST_ID; // on slot 0

struct Effects_World : World {
    Effects_World() : window(S(), theme) {}
    Effect_Values Of(Effect_Kind kind) { return S().channels->Effects.Row(0).Of(kind); }
    QWidget& Page(Effect_Kind kind) {
        window.Show_Effect(CHANNEL, kind);
        return *window.findChild<QTabWidget*>()->currentWidget();
    }

    frmFX_Config window;
};

} // namespace

class Effects_Window_Test : public QObject {
    Q_OBJECT
private slots:
    void Every_Slider_Reaches_Its_Parameter_data();
    void Every_Slider_Reaches_Its_Parameter();
    void The_Window_Goes_With_Its_Channel();
};

void Effects_Window_Test::Every_Slider_Reaches_Its_Parameter_data() {
    QTest::addColumn<int>("kind");
    for (const Effect_Kind kind : ALL_EFFECTS)
        QTest::newRow(Effect_Name(kind)) << static_cast<int>(kind);
}

void Effects_Window_Test::Every_Slider_Reaches_Its_Parameter() {
    QFETCH(int, kind);
    const auto effect = static_cast<Effect_Kind>(kind);
    const auto parameters = Parameters_Of(effect);
    Effects_World w;
    QWidget& page = w.Page(effect);
    const auto sliders = page.findChildren<QSlider*>();
    QCOMPARE(sliders.size(), static_cast<qsizetype>(parameters.size()));
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        QSlider* slider = sliders[static_cast<qsizetype>(i)];
        QCOMPARE(slider->accessibleName(), QString::fromLatin1(parameters[i].name));
        for (const bool most : {true, false}) {
            Effect_Values expected = w.Of(effect);
            expected[i] = most ? parameters[i].most : parameters[i].least;
            slider->setValue(most ? slider->maximum() : slider->minimum());
            QCOMPARE(w.Of(effect), expected);
            QCOMPARE(w.test.sound.effects[0].Of(effect), expected); // it sounds at once
        }
    }
    auto* on = page.findChild<QCheckBox*>();
    on->click();
    QVERIFY(w.S().channels->Effects.Is_On(0, effect) && w.test.sound.effects[0].Is_On(effect));
    Click(page, "reset");
    QCOMPARE(w.Of(effect), Neutral_Values(effect));
    QVERIFY(w.S().channels->Effects.Is_On(0, effect)); // the values only
    on->click();
    QVERIFY(!w.test.sound.effects[0].Any_On());
    // What others change is shown.
    w.S().hub->Message(nullptr, MSG_SET_EFFECTS, CHANNEL, kind, true);
    QVERIFY(on->isChecked());
}

void Effects_Window_Test::The_Window_Goes_With_Its_Channel() {
    Effects_World w;
    w.Page(Effect_Kind::Echo);
    QVERIFY(w.window.isVisible());
    w.S().hub->Message(nullptr, MSG_DELETE_CHANNEL, CHANNEL);
    QVERIFY(!w.window.isVisible());
}

QTEST_MAIN(Effects_Window_Test)
#include "effects_window_test.moc"
