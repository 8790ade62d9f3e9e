#pragma once

#include "widgets/theme.h"

#include <QWidget>

#include <vector>

namespace tonvex {

/// The chord keys of the layout as chips: the key's letter above the chord's name; lit while it is down.
class Chord_Chips final : public QWidget {
    Q_OBJECT
public:
    struct Chip {
        int key = 0; ///< key number
        QString letter;
        QString chord;
        bool operator==(const Chip&) const = default;
    };
    explicit Chord_Chips(const Theme& theme, QWidget* parent = nullptr);
    void Set_Chips(std::vector<Chip> newChips);
    const std::vector<Chip>& Chips() const noexcept { return chips; }
    void Set_Lit(int key, bool lit);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    static constexpr int ROWS = 3;
    int Columns() const;
    QRect Chip_Rect(std::size_t chip) const;

    const Theme& theme;
    std::vector<Chip> chips;
    std::vector<int> litKeys;
};

} // namespace tonvex
