#include "widgets/meter_fader.h"

#include "widgets/level_meter.h"
#include "widgets/value_slider.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace tonvex {

Meter_Fader::Meter_Fader(const Theme& theme, const QString& name, const QString& meterName, int most,
                         int neutral, int step, double designWidth, QWidget* parent)
    : QWidget(parent), fader(new Value_Slider(theme, Slider_Kind::Fill, name, 0, most, neutral, step, this)),
      meter(new Level_Meter(theme, meterName, 2, this)) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    fader->Set_Width(designWidth);
    meter->Set_Design_Size(3, designWidth - 8); // less the insets of the track
    meter->Set_Lying();
    auto* column = new QVBoxLayout(this);
    column->setSpacing(0);
    column->addWidget(fader);
    auto* under = new QHBoxLayout;
    under->addWidget(meter);
    column->addLayout(under);
    column->setContentsMargins(0, 0, 0, 0);
    // The meter is as long as the fader's track.
    const auto takeTheme = [&theme, under] { under->setContentsMargins(theme.Px(4), 0, theme.Px(4), 0); };
    connect(&theme, &Theme::Changed, this, takeTheme);
    takeTheme();
}

} // namespace tonvex
