// Gestures on the channel panels, and what the effects' pictures show.

#include "audio/patch_tables.h"
#include "engine/windows/master_volume.h"
#include "support/window_world.h"
#include "widgets/channel_row.h"
#include "widgets/channels_header.h"
#include "widgets/channels_list.h"
#include "widgets/effect_figures.h"
#include "widgets/frm_patch_selection_win.h"
#include "widgets/level_meter.h"
#include "widgets/tool_button.h"
#include "widgets/value_slider.h"

#include <QLineEdit>
#include <QListWidget>
#include <QWheelEvent>

#include <cmath>

using namespace tonvex;

namespace {

constexpr std::int32_t CHANNEL = FIRST_ID; // on slot 0

struct Panels_World : World {
    Panels_World() { Fill_Plain_Patches(*S().channels); }
    const GlobalChannel& Row(int row) { return S().channels->Channels[static_cast<std::size_t>(row)]; }
    std::vector<Sound_Message>& Posted() { return test.sound.posted; }
    int Last_Patch() {
        for (auto message = Posted().rbegin(); message != Posted().rend(); ++message)
            if (message->op == Sound_Op::Patch)
                return message->a;
        return -1;
    }
};

QWidget* Named(QWidget& parent, const QString& name) {
    for (auto* widget : parent.findChildren<QWidget*>())
        if (widget->accessibleName() == name)
            return widget;
    qFatal("no %s", qPrintable(name));
}

void Turn_Wheel(QWidget& widget, double notches, Qt::KeyboardModifiers keys = Qt::NoModifier) {
    const QPointF middle(widget.width() / 2.0, widget.height() / 2.0);
    QWheelEvent turn(middle, widget.mapToGlobal(middle), {}, {0, static_cast<int>(notches * 120)},
                     Qt::NoButton, keys, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &turn);
}

} // namespace

class Panels_Test : public QObject {
    Q_OBJECT
private slots:
    void Wheel_And_Double_Click_Set_Volume_And_Pan();
    void A_Patch_Is_Heard_Before_It_Is_Taken();
    void A_Preview_Survives_Its_Channel();
    void Mute_And_Solo_Are_Cleared_As_One_Step();
    void The_Amplification_Is_Kept();
    void A_Meter_Marks_What_Went_Over_Full_Scale();
    void Effect_Figures_Show_The_Values();
};

void Panels_Test::Wheel_And_Double_Click_Set_Volume_And_Pan() {
    Panels_World w;
    ChannelsList list(w.S(), w.theme);
    list.show();
    const QString name = QString::fromStdString(w.Row(0).ChannelName);
    QWidget* volume = Named(list, "Volume of " + name);
    QWidget* pan = Named(list, "Pan of " + name);
    const int before = w.Row(0).Volume;
    Turn_Wheel(*volume, 2);
    QCOMPARE(int{w.Row(0).Volume}, before + 10);
    Turn_Wheel(*volume, -1, Qt::ShiftModifier);
    QCOMPARE(int{w.Row(0).Volume}, before + 9);
    Turn_Wheel(*volume, 0.5); // half a notch waits for its other half
    QCOMPARE(int{w.Row(0).Volume}, before + 9);
    Turn_Wheel(*volume, 0.5);
    QCOMPARE(int{w.Row(0).Volume}, before + 14);
    Turn_Wheel(*pan, -1);
    QCOMPARE(int{w.Row(0).Pan}, 58);
    QTest::mouseDClick(volume, Qt::LeftButton);
    QTest::mouseDClick(pan, Qt::LeftButton);
    QCOMPARE(int{w.Row(0).Volume}, 80);
    QCOMPARE(int{w.Row(0).Pan}, 64);
    for (const auto& [key, value] : {std::pair{Qt::Key_End, 127}, {Qt::Key_Home, 0}, {Qt::Key_Left, 0}}) {
        QTest::keyClick(volume, key);
        QCOMPARE(int{w.Row(0).Volume}, value);
    }
}

void Panels_Test::A_Patch_Is_Heard_Before_It_Is_Taken() {
    Panels_World w;
    w.S().hub->Message(nullptr, MSG_SET_PATCH, CHANNEL, 12);
    for (const bool taken : {false, true}) {
        auto* window = new frmPatchSelectionWin(w.S(), CHANNEL, nullptr);
        window->open();
        QTest::keyClicks(window->findChild<QLineEdit*>(), "41 ");
        auto* list = window->findChild<QListWidget*>();
        w.Posted().clear();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(list->currentItem()).center());
        QCOMPARE(w.Last_Patch(), 40);
        QCOMPARE(Count(w.Posted(), Sound_Op::NoteOn, 0, 60), 1);
        QCOMPARE(int{w.Row(0).PatchI}, 12); // the song has not changed
        Click(*window, "preview");
        QCOMPARE(Count(w.Posted(), Sound_Op::NoteOn, 0, 60), 2);
        QCOMPARE(Count(w.Posted(), Sound_Op::NoteOff, 0, 60), 1); // the first gave way
        if (taken)
            window->accept();
        else
            QTest::keyClick(window, Qt::Key_Escape);
        QCOMPARE(Count(w.Posted(), Sound_Op::NoteOff, 0, 60), 2);
        QCOMPARE(int{w.Row(0).PatchI}, taken ? 40 : 12);
        QCOMPARE(w.Last_Patch(), taken ? 40 : 12);
    }
}

void Panels_Test::A_Preview_Survives_Its_Channel() {
    Panels_World w;
    auto* window = new frmPatchSelectionWin(w.S(), CHANNEL, nullptr);
    window->open();
    Click(*window, "preview");
    w.S().hub->Message(nullptr, MSG_DELETE_CHANNEL, CHANNEL);
    Click(*window, "preview");
    window->accept();
    QCOMPARE(w.S().channels->Count_Channels(), 0);
    QCOMPARE(Count(w.Posted(), Sound_Op::NoteOn, 0, 60), Count(w.Posted(), Sound_Op::NoteOff, 0, 60));
}

void Panels_Test::Mute_And_Solo_Are_Cleared_As_One_Step() {
    Panels_World w;
    Channels_Header header(w.S(), w.theme);
    auto* clearMute = static_cast<QAbstractButton*>(Named(header, "Clear the mute of all channels"));
    auto* clearSolo = static_cast<QAbstractButton*>(Named(header, "Clear the solo of all channels"));
    w.S().hub->Message(nullptr, MSG_ADD_CHANNEL, std::string("Second"), false);
    QVERIFY(!clearMute->isEnabled() && !clearSolo->isEnabled());
    for (int row = 0; row < 2; ++row) {
        w.S().hub->Message(nullptr, MSG_SET_MUTE, w.Row(row).ChannelID, true);
        w.S().hub->Message(nullptr, MSG_SET_SOLO, w.Row(row).ChannelID, true);
    }
    QVERIFY(clearMute->isEnabled() && clearSolo->isEnabled());
    clearMute->click();
    QVERIFY(!Is_On(w.Row(0).Mute) && !Is_On(w.Row(1).Mute) && Is_On(w.Row(0).Solo));
    QVERIFY(!clearMute->isEnabled() && clearSolo->isEnabled());
    clearSolo->click();
    QVERIFY(!Is_On(w.Row(0).Solo) && !Is_On(w.Row(1).Solo));
}

void Panels_Test::The_Amplification_Is_Kept() {
    Panels_World w;
    for (const double factor : {1.0, 1.2}) {
        Master_Volume master(w.S(), w.theme);
        master.show();
        auto* slider = static_cast<Value_Slider*>(Named(master, "Volume amplification"));
        QCOMPARE(slider->value(), static_cast<int>(std::lround(factor * 10)));
        QCOMPARE(w.test.sound.amplification, static_cast<float>(factor));
        QTest::keyClick(slider, Qt::Key_Right); // a step is 0.2
        QCOMPARE(w.test.sound.amplification, static_cast<float>(factor + 0.2));
    }
}

void Panels_Test::A_Meter_Marks_What_Went_Over_Full_Scale() {
    Panels_World w;
    Level_Meter meter(w.theme, "Output level", 2);
    meter.resize(meter.sizeHint());
    const auto red = [&] {
        const QImage picture = meter.grab().toImage();
        return picture.pixelColor(picture.width() - 4, 1) == w.theme.Tokens().record;
    };
    meter.Show_Peaks(0.2F, 1.0F, 33); // full scale itself is whole
    meter.Show_Peaks(0.0F, 0.0F, 10'000);
    QVERIFY(!meter.Is_Clipped() && meter.Is_Still() && !red());
    meter.Show_Peaks(0.2F, 1.01F, 33);
    meter.Show_Peaks(0.0F, 0.0F, 10'000);
    QVERIFY(meter.Is_Clipped() && meter.Is_Still() && red());
    QCOMPARE(meter.accessibleDescription(), QStringLiteral("went over full scale"));
    QTest::mouseClick(&meter, Qt::LeftButton);
    QVERIFY(!meter.Is_Clipped() && !red());
    QVERIFY(meter.accessibleDescription().isEmpty());
}

void Panels_Test::Effect_Figures_Show_The_Values() {
    const auto near = [](double a, double b) { return std::abs(a - b) < 1e-4; };
    // A reverb of 1500 ms that begins 30 dB down: half the height, and down after half its time, 750 of 3000.
    Effect_Values values = Neutral_Values(Effect_Kind::Reverb);
    values[REVERB_MIX] = -30.0F;
    values[REVERB_TIME] = 1500.0F;
    values[REVERB_HIGH_RATIO] = 0.5F;
    Effect_Figure figure = Figure_Of(Effect_Kind::Reverb, values);
    QCOMPARE(figure.curves.size(), std::size_t{2});
    QVERIFY(near(figure.curves[0].points[0].second, 0.5) && near(figure.curves[0].points[1].first, 0.25));
    QVERIFY(near(figure.curves[1].points[1].first, 0.125) && figure.curves[1].second);
    values[REVERB_MIX] = -96.0F;
    QVERIFY(Figure_Of(Effect_Kind::Reverb, values).curves.empty());

    // All wet, a half each time (6.02 dB), crossing sides: left 400 and 1000 ms, then 1400; right 600, 1000.
    values = Neutral_Values(Effect_Kind::Echo);
    values[ECHO_MIX] = 100.0F;
    values[ECHO_LEFT] = 400.0F;
    values[ECHO_RIGHT] = 600.0F;
    values[ECHO_PAN] = 1.0F;
    figure = Figure_Of(Effect_Kind::Echo, values);
    const double once = 1.0 - 6.0206 / 48.0;
    QVERIFY(near(figure.taps[0].x, 0.1) && near(figure.taps[0].height, 1.0));
    QVERIFY(near(figure.taps[1].x, 0.25) &&
            near(figure.taps[1].height, -once)); // left, then through the right
    QVERIFY(near(figure.taps[2].x, 0.35) && figure.taps[2].height > 0.0);
    values[ECHO_FEEDBACK] = 100.0F;
    values[ECHO_LEFT] = values[ECHO_RIGHT] = 1.0F;
    QVERIFY(Figure_Of(Effect_Kind::Echo, values).taps.size() <= 400);

    // 2 ms of 4 with full depth swing between nothing and 4 ms, half the height; a quarter turn lies at 1 s.
    values = Neutral_Values(Effect_Kind::Flanger);
    figure = Figure_Of(Effect_Kind::Flanger, values);
    QVERIFY(near(figure.curves[1].points[0].second, 0.25));
    QVERIFY(near(figure.curves[1].points[120].second, 0.5));

    // Without edge the drive is 6 dB, a factor of 1.9953; at full height tanh gives 0.9637.
    values = Neutral_Values(Effect_Kind::Distortion);
    values[DISTORTION_EDGE] = 0.0F;
    figure = Figure_Of(Effect_Kind::Distortion, values);
    QVERIFY(near(figure.curves[0].points[240].second, 0.5 + 0.5 * 0.9637));
    // At the centre the band doubles what is there: +6.02 dB, less the 3.01 of a lowpass at the same place.
    values[DISTORTION_CENTRE] = values[DISTORTION_LOWPASS] = 894.4272F; // the middle of 100 to 8000
    figure = Tone_Of_Distortion(values);
    QVERIFY(near(figure.curves[0].points[120].second, (6.0206 - 3.0103 + 36.0) / 48.0));
}

QTEST_MAIN(Panels_Test)
#include "panels_test.moc"
