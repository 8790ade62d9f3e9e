#pragma once

#include "widgets/theme.h"

#include <QWidget>

namespace tonvex {

class Level_Meter;
class Value_Slider;

/// A fader with the level that it makes below it, left over right.
class Meter_Fader final : public QWidget {
    Q_OBJECT
public:
    /// As Value_Slider; designWidth in pixels at 100 %.
    Meter_Fader(const Theme& theme, const QString& name, const QString& meterName, int most, int neutral,
                int step, double designWidth, QWidget* parent = nullptr);
    Value_Slider& Fader() { return *fader; }
    Level_Meter& Meter() { return *meter; }

private:
    Value_Slider* fader;
    Level_Meter* meter;
};

} // namespace tonvex
