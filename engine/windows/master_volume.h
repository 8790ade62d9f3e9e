#pragma once

#include "app/session.h"
#include "widgets/theme.h"

#include <QWidget>

namespace tonvex {

class Meter_Fader;
class Value_Slider;

/// Master volume over its level, and the amplification behind it, which is kept in the user's settings.
/// Interface thread.
class Master_Volume final : public QWidget {
    Q_OBJECT
public:
    Master_Volume(Session& session, const Theme& theme, QWidget* parent = nullptr);
    /// Shown values, after they changed elsewhere.
    void Refresh();
    /// Peaks of the output since the last call.
    void Show_Levels(float left, float right, int elapsedMs);
    bool Meters_Are_Still() const;
    void Clear_Clips();

private:
    Session& session;
    Meter_Fader* master;
    Value_Slider* amplification; ///< tenths
};

} // namespace tonvex
