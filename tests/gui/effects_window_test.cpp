#include "song/effect_records.h"
#include "support/window_world.h"
#include "widgets/frm_fx_config.h"

#include <QCheckBox>
#include <QSlider>
#include <QTabWidget>

#include <utility>

using namespace tonvex;

namespace {

constexpr std::int32_t CHANNEL = FIRST_ID; // on slot 0

struct Effects_World : World {
    Effects_World() : window(S(), theme) {
        S().events.Subscribe(
            [this](int msg, std::int32_t, const std::string&) { changes += msg == MSG_SET_EFFECTS ? 1 : 0; });
    }
    Effect_Values Of(Effect_Kind kind) { return S().channels->Effects.Row(0).Of(kind); }
    QWidget& Page(Effect_Kind kind) {
        window.Show_Effect(CHANNEL, kind);
        return *window.findChild<QTabWidget*>()->currentWidget();
    }

    frmFX_Config window;
    int changes = 0; ///< of effects, in the song
};

} // namespace

class Effects_Window_Test : public QObject {
    Q_OBJECT
private slots:
    void Every_Slider_Reaches_Its_Parameter_data();
    void Every_Slider_Reaches_Its_Parameter();
    void Steps_Are_Joined();
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
        const float neutral = parameters[i].neutral;
        QCOMPARE(frmFX_Config::Value_At(parameters[i], frmFX_Config::Step_Of(parameters[i], neutral)),
                 neutral);
        for (const bool most : {true, false}) {
            const Effect_Values before = w.Of(effect);
            Effect_Values expected = before;
            expected[i] = most ? parameters[i].most : parameters[i].least;
            slider->setSliderDown(true);
            slider->setValue((slider->minimum() + slider->maximum()) / 2);
            slider->setValue(most ? slider->maximum() : slider->minimum());
            QCOMPARE(w.test.sound.effects[0].Of(effect), expected); // it sounds at once
            QCOMPARE(w.Of(effect), before);                         // and is one change when let go
            QCOMPARE(w.changes, 0);
            slider->setSliderDown(false);
            QCOMPARE(w.Of(effect), expected);
            QCOMPARE(std::exchange(w.changes, 0), expected == before ? 0 : 1);
        }
    }
    QStringList letters = Mnemonics(page);
    QCOMPARE(letters.size(), static_cast<qsizetype>(parameters.size()) + 2);
    QCOMPARE(letters.removeDuplicates(), 0);
    auto* on = page.findChild<QCheckBox*>();
    QTest::mouseDClick(sliders[0], Qt::LeftButton, {}, QPoint(1, 12)); // where least would be
    QCOMPARE(w.Of(effect)[0], Neutral_Values(effect)[0]);
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

void Effects_Window_Test::Steps_Are_Joined() {
    Effects_World w;
    const auto sliders = w.Page(Effect_Kind::Echo).findChildren<QSlider*>();
    for (int i = 0; i < 5; ++i)
        QTest::keyClick(sliders[0], Qt::Key_Right); // 2.5 % in all
    QCOMPARE(w.test.sound.effects[0].Of(Effect_Kind::Echo)[ECHO_MIX], 52.5F);
    QCOMPARE(w.changes, 0);
    QTest::keyClick(sliders[1], Qt::Key_Home); // another one ends the first
    QCOMPARE(w.changes, 1);
    QCOMPARE(w.Of(Effect_Kind::Echo)[ECHO_MIX], 52.5F);
    QTRY_COMPARE(w.changes, 2); // a pause ends the second
    QTest::keyClick(sliders[1], Qt::Key_Right);
    QTest::keyClick(sliders[1], Qt::Key_Left); // back where it was
    w.window.hide();
    QCOMPARE(w.changes, 2);
    QTest::keyClick(sliders[0], Qt::Key_Right, Qt::ShiftModifier); // fine
    QCOMPARE(w.test.sound.effects[0].Of(Effect_Kind::Echo)[ECHO_MIX], 52.6F);
}

void Effects_Window_Test::The_Window_Goes_With_Its_Channel() {
    Effects_World w;
    auto* slider = w.Page(Effect_Kind::Echo).findChild<QSlider*>();
    QVERIFY(w.window.isVisible());
    slider->setSliderDown(true);
    slider->setValue(0);
    w.S().hub->Message(nullptr, MSG_DELETE_CHANNEL, CHANNEL);
    QVERIFY(!w.window.isVisible());
    QCOMPARE(w.test.sound.effects[0], w.S().channels->Effects.Row(0)); // what was in hand is gone
}

QTEST_MAIN(Effects_Window_Test)
#include "effects_window_test.moc"
