#pragma once

#include "app/session.h"
#include "editors/event_display.h"
#include "widgets/plain_dialog.h"

#include <cstdint>
#include <utility>
#include <vector>

class QCheckBox;

namespace tonvex {

/// Chooses the channels whose events are shown, pale, behind those of the channel in hand. Interface thread.
class frmSelChannelsView final : public Plain_Dialog {
    Q_OBJECT
public:
    frmSelChannelsView(const Session& session, const Theme& look, const Event_Display& display,
                       QWidget* parent = nullptr);
    /// Every channel on offer, by ID, and whether it is to be shown.
    std::vector<std::pair<std::int32_t, bool>> Choice() const;

private:
    std::vector<std::pair<std::int32_t, QCheckBox*>> checks; ///< by ChannelID
};

} // namespace tonvex
