#include "widgets/chord_chips.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>

namespace tonvex {

Chord_Chips::Chord_Chips(const Theme& look, QWidget* parent) : QWidget(parent), theme(look) {
    setAccessibleName(tr("Chord keys"));
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(&theme, &Theme::Changed, this, [this] {
        updateGeometry();
        update();
    });
}

int Chord_Chips::Columns() const {
    return std::max(1, (static_cast<int>(chips.size()) + ROWS - 1) / ROWS);
}

QSize Chord_Chips::sizeHint() const {
    if (chips.empty())
        return {0, 0};
    return {theme.Px(40) * Columns() - theme.Px(4), theme.Px(36) * ROWS - theme.Px(4)};
}

QSize Chord_Chips::minimumSizeHint() const {
    return sizeHint();
}

void Chord_Chips::Set_Chips(std::vector<Chip> newChips) {
    if (chips == newChips)
        return;
    chips = std::move(newChips);
    QStringList told;
    for (const Chip& chip : chips)
        told << QStringLiteral("%1 %2").arg(chip.letter, chip.chord);
    setAccessibleDescription(told.join(QStringLiteral(", ")));
    updateGeometry();
    update();
}

QRect Chord_Chips::Chip_Rect(std::size_t chip) const {
    const int columns = Columns();
    const int row = static_cast<int>(chip) / columns;
    const int column = static_cast<int>(chip) % columns;
    return {column * theme.Px(40), row * theme.Px(36), theme.Px(36), theme.Px(32)};
}

void Chord_Chips::Set_Lit(int key, bool lit) {
    const auto found = std::find(litKeys.begin(), litKeys.end(), key);
    if (lit == (found != litKeys.end()))
        return;
    if (lit)
        litKeys.push_back(key);
    else
        litKeys.erase(found);
    for (std::size_t chip = 0; chip < chips.size(); ++chip)
        if (chips[chip].key == key)
            update(Chip_Rect(chip));
}

void Chord_Chips::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Theme_Tokens& t = theme.Tokens();
    QFont letterFace = theme.Font(Text_Size::Caption);
    letterFace.setPixelSize(theme.Px(9));
    const QFont chordFace = theme.Font(Text_Size::Caption, QFont::DemiBold);
    for (std::size_t chip = 0; chip < chips.size(); ++chip) {
        const QRect box = Chip_Rect(chip);
        if (!box.intersects(event->rect()))
            continue;
        const bool on = std::find(litKeys.begin(), litKeys.end(), chips[chip].key) != litKeys.end();
        painter.setPen(Qt::NoPen);
        painter.setBrush(on ? t.accent : t.control);
        painter.drawRoundedRect(box, theme.Px(5), theme.Px(5));
        painter.setPen(on ? t.onAccent : t.dim);
        painter.setFont(letterFace);
        painter.drawText(box.adjusted(0, theme.Px(3), 0, 0), Qt::AlignHCenter | Qt::AlignTop,
                         chips[chip].letter);
        painter.setPen(on ? t.onAccent : t.text);
        painter.setFont(chordFace);
        const QString name =
            QFontMetrics(chordFace).elidedText(chips[chip].chord, Qt::ElideRight, box.width());
        painter.drawText(box.adjusted(0, 0, 0, -theme.Px(4)), Qt::AlignHCenter | Qt::AlignBottom, name);
    }
}

} // namespace tonvex
