#include "engine/windows/master_volume.h"

#include "widgets/level_meter.h"
#include "widgets/meter_fader.h"
#include "widgets/value_slider.h"

#include <QGridLayout>
#include <QLabel>

#include <algorithm>
#include <cstdlib>

namespace tonvex {

namespace {

constexpr const char* SECTION = "Window";
constexpr const char* AMPLIFICATION = "Amplification";
constexpr int MOST_MASTER = 127;
constexpr int NEUTRAL_MASTER = 100;
constexpr int NO_AMPLIFICATION = 10;
constexpr int MOST_AMPLIFICATION = 40;
constexpr double FADER_WIDTH = 110;

QLabel* Caption(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setProperty("dim", true);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return label;
}

} // namespace

Master_Volume::Master_Volume(Session& owner, const Theme& theme, QWidget* parent)
    : QWidget(parent), session(owner),
      master(new Meter_Fader(theme, tr("Master volume"), tr("Output level beside the master volume"),
                             MOST_MASTER, NEUTRAL_MASTER, 6, FADER_WIDTH, this)),
      amplification(new Value_Slider(theme, Slider_Kind::Fill, tr("Volume amplification"), NO_AMPLIFICATION,
                                     MOST_AMPLIFICATION, NO_AMPLIFICATION, 2, this)) {
    master->Fader().toText = [](int value) {
        return tr("%1 %").arg((value * 100 + MOST_MASTER / 2) / MOST_MASTER);
    };
    amplification->toText = [](int tenths) { return tr("× %1").arg(tenths / 10.0, 0, 'f', 1); };
    amplification->Set_Width(FADER_WIDTH);
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(Caption(tr("Master"), this), 0, 0);
    grid->addWidget(master, 0, 1);
    grid->addWidget(Caption(tr("Volume amplification"), this), 1, 0);
    grid->addWidget(amplification, 1, 1);
    const auto takeTheme = [&theme, grid, this] {
        grid->setHorizontalSpacing(theme.Px(4));
        grid->setVerticalSpacing(theme.Px(2));
        for (auto* label : findChildren<QLabel*>())
            label->setFont(theme.Font(Text_Size::Caption));
    };
    connect(&theme, &Theme::Changed, this, takeTheme);
    takeTheme();
    connect(&master->Fader(), &Value_Slider::userChanged, this,
            [this](int value) { session.output->Midi_SetMasterVolume(value); });
    connect(amplification, &Value_Slider::userChanged, this, [this](int tenths) {
        session.doors.sound.Set_Amplification(static_cast<float>(tenths) / NO_AMPLIFICATION);
        session.doors.store.Set(SECTION, AMPLIFICATION, std::to_string(tenths));
    });
    const int kept = std::atoi(session.doors.store.Get(SECTION, AMPLIFICATION, "10").c_str());
    amplification->Show_Value(std::clamp(kept, NO_AMPLIFICATION, MOST_AMPLIFICATION));
    session.doors.sound.Set_Amplification(static_cast<float>(amplification->value()) / NO_AMPLIFICATION);
    Refresh();
}

void Master_Volume::Refresh() {
    master->Fader().Show_Value(session.output->Midi_GetMasterVolume());
}

void Master_Volume::Show_Levels(float left, float right, int elapsedMs) {
    master->Meter().Show_Peaks(left, right, elapsedMs);
}

bool Master_Volume::Meters_Are_Still() const {
    return master->Meter().Is_Still();
}

void Master_Volume::Clear_Clips() {
    master->Meter().Clear_Clip();
}

} // namespace tonvex
