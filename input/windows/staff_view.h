#pragma once

#include "widgets/theme.h"

#include <QWidget>

#include <array>
#include <span>
#include <string>
#include <vector>

namespace tonvex {

/// Where a note stands on the staff.
struct Staff_Place {
    int step = 0;        ///< letter C D E F G A B as 0 to 6, and 7 for each octave of the name: C4 is 28
    char accidental = 0; ///< '#', 'b' or 0
    bool operator==(const Staff_Place&) const = default;
};

/// By the name of the note alone: first letter, last character as octave, second character as accidental.
/// A name without an octave (notes below 24) has octave 0.
Staff_Place Place_Of_Name(const std::string& name);

/// Columns, from 0, of signs at rising steps, so that those of one column stand at least apart steps from
/// each other; each sign takes the first column that has room.
std::vector<int> Staff_Columns(std::span<const int> steps, int apart);

/// A pair of staves, treble and bass, with whole notes for what sounds. Interface thread.
class Staff_View final : public QWidget {
    Q_OBJECT
public:
    explicit Staff_View(const Theme& theme, QWidget* parent = nullptr);

    /// note is 0 to 127; name as the notation in force spells it, with its octave.
    void Set_Note(int note, const std::string& name);
    void Clear_Note(int note);
    void Clear();
    bool Shows(int note) const;
    Staff_Place Place(int note) const { return places[static_cast<std::size_t>(note)]; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double Y_Of(int step) const;
    void Paint_Lines(QPainter& painter) const;
    double Half_Space() const { return Y_Of(0) - Y_Of(1); }
    void Paint_Head(QPainter& painter, int step, int column) const;
    void Paint_Accidental(QPainter& painter, const Staff_Place& place, int column) const;

    const Theme& theme;
    std::array<bool, 128> shown{};
    std::array<Staff_Place, 128> places{};
};

} // namespace tonvex
