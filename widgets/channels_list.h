#pragma once

#include "app/session.h"
#include "widgets/theme.h"

#include <QScrollArea>

#include <vector>

class QVBoxLayout;

namespace tonvex {

class Channel_Row;

/// The channels of the song, one row each in the order of the table. One row is selected whenever there is a
/// channel. Follows the song through the session's notices. Interface thread.
class ChannelsList final : public QScrollArea {
    Q_OBJECT
public:
    ChannelsList(Session& session, Theme& theme, QWidget* parent = nullptr);
    ~ChannelsList() override;

    /// NOT_GIVEN without a channel.
    std::int32_t Selected() const noexcept { return selectedId; }
    void Select(std::int32_t channelId);
    void Rename(std::int32_t channelId);
    /// The rows follow this widget of the same window in the tab order.
    void Set_Tab_Anchor(QWidget* before);
    Channel_Row* Row_Of(std::int32_t channelId) const;
    const std::vector<Channel_Row*>& Rows() const noexcept { return rows; }
    /// Levels of the slots since the last call.
    void Show_Levels(int elapsedMs);
    bool Meters_Are_Still() const;
    void Clear_Clips();

signals:
    void selectionChanged(std::int32_t channelId);

private:
    void On_Message(int msgId, std::int32_t param);
    void Rebuild();
    void Order_Tabs();
    void Step(int byRows);

    Session& session;
    Theme& theme;
    QVBoxLayout* column;
    QWidget* tabAnchor = nullptr;
    std::vector<Channel_Row*> rows;
    std::int32_t selectedId = NOT_GIVEN;
    int subscription = 0;
};

} // namespace tonvex
