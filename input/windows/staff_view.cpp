#include "input/windows/staff_view.h"

#include <QPainter>

namespace tonvex {

namespace {

constexpr int STEPS_PER_OCTAVE = 7;
constexpr int LOWEST_STEP = 7;   ///< C1
constexpr int HIGHEST_STEP = 52; ///< F7
constexpr int MIDDLE_C = 28;
constexpr int BASS_LOW = 18; ///< lines of the bass staff: G2 B2 D3 F3 A3
constexpr int BASS_HIGH = 26;
constexpr int TREBLE_LOW = 30; ///< lines of the treble staff: E4 G4 B4 D5 F5
constexpr int TREBLE_HIGH = 38;
constexpr int GAP = 4; ///< steps by which the staves stand apart; the middle C keeps to the treble

bool In_Range(int note) {
    return note >= 0 && note < 128;
}

} // namespace

Staff_Place Place_Of_Name(const std::string& name) {
    static const std::string LETTERS = "CDEFGAB";
    Staff_Place place;
    if (name.empty())
        return place;
    const auto letter = LETTERS.find(name.front());
    const char last = name.back();
    const int octave = last >= '0' && last <= '9' ? last - '0' : 0;
    place.step = static_cast<int>(letter == std::string::npos ? 0 : letter) + octave * STEPS_PER_OCTAVE;
    if (name.size() > 1 && (name[1] == '#' || name[1] == 'b'))
        place.accidental = name[1];
    return place;
}

Staff_View::Staff_View(const Theme& look, QWidget* parent) : QWidget(parent), theme(look) {
    setAccessibleName(tr("Staff"));
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    connect(&theme, &Theme::Changed, this, [this] {
        updateGeometry();
        update();
    });
}

QSize Staff_View::sizeHint() const {
    return {theme.Px(120), theme.Px(152)};
}

void Staff_View::Set_Note(int note, const std::string& name) {
    if (!In_Range(note))
        return;
    shown[static_cast<std::size_t>(note)] = true;
    places[static_cast<std::size_t>(note)] = Place_Of_Name(name);
    update();
}

void Staff_View::Clear_Note(int note) {
    if (!Shows(note))
        return;
    shown[static_cast<std::size_t>(note)] = false;
    update();
}

void Staff_View::Clear() {
    shown.fill(false);
    update();
}

bool Staff_View::Shows(int note) const {
    return In_Range(note) && shown[static_cast<std::size_t>(note)];
}

double Staff_View::Y_Of(int step) const {
    const double perStep = height() / double(HIGHEST_STEP + GAP - LOWEST_STEP + 2);
    const int shift = step >= MIDDLE_C ? GAP : 0;
    return height() - (step + shift - LOWEST_STEP + 1) * perStep;
}

void Staff_View::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    Paint_Lines(painter);
    int before = -2;
    bool aside = false;
    for (std::size_t note = 0; note < shown.size(); ++note) {
        if (!shown[note])
            continue;
        // Heads that would touch stand side by side.
        aside = places[note].step - before < 2 && !aside;
        before = places[note].step;
        Paint_Note(painter, places[note], aside);
    }
}

void Staff_View::Paint_Lines(QPainter& painter) const {
    painter.setPen(QPen(theme.Tokens().dim, 1));
    for (const auto& [low, high] : {std::pair{BASS_LOW, BASS_HIGH}, std::pair{TREBLE_LOW, TREBLE_HIGH}})
        for (int step = low; step <= high; step += 2)
            painter.drawLine(QPointF(0, Y_Of(step)), QPointF(width(), Y_Of(step)));
    painter.drawLine(QPointF(0.5, Y_Of(BASS_LOW)), QPointF(0.5, Y_Of(TREBLE_HIGH)));
}

void Staff_View::Paint_Note(QPainter& painter, const Staff_Place& place, bool aside) const {
    const Theme_Tokens& t = theme.Tokens();
    const double half = (Y_Of(0) - Y_Of(1));
    const double column = width() * 0.55;
    const double middle = column + (aside ? half * 2.8 : 0.0);
    const QPointF centre(middle, Y_Of(place.step));
    painter.setPen(QPen(t.dim, 1));
    const auto ledger = [&](int step) {
        painter.drawLine(QPointF(middle - half * 2.4, Y_Of(step)), QPointF(middle + half * 2.4, Y_Of(step)));
    };
    for (int step = TREBLE_HIGH + 2; step <= place.step; step += 2)
        ledger(step);
    for (int step = BASS_LOW - 2; step >= place.step; step -= 2)
        ledger(step);
    if (place.step == MIDDLE_C)
        ledger(MIDDLE_C);
    painter.setPen(QPen(t.accent, half * 0.7));
    painter.setBrush(Qt::NoBrush);
    painter.save();
    painter.translate(centre);
    painter.rotate(-15);
    painter.drawEllipse(QPointF(0, 0), half * 1.5, half * 0.9);
    painter.restore();
    if (place.accidental == 0)
        return;
    QFont face = theme.Font(Text_Size::Caption, QFont::DemiBold);
    face.setPixelSize(static_cast<int>(half * 5));
    painter.setFont(face);
    painter.setPen(t.text);
    const QRectF box(column - half * 8, centre.y() - half * 4, half * 5, half * 8);
    painter.drawText(box, Qt::AlignRight | Qt::AlignVCenter,
                     place.accidental == '#' ? QString(QChar(0x266F)) : QString(QChar(0x266D)));
}

} // namespace tonvex
