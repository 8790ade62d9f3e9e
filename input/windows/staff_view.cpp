#include "input/windows/staff_view.h"

#include <QPainter>

#include <algorithm>

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
constexpr int GAP = 4;         ///< steps by which the staves stand apart; the middle C keeps to the treble
constexpr double MIDDLE = 0.5; ///< of the first column of heads, in widths of the view
constexpr int HEAD_STEPS = 2;  ///< heights of signs, in steps
constexpr int ACCIDENTAL_STEPS = 5;

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

std::vector<int> Staff_Columns(std::span<const int> steps, int apart) {
    std::vector<int> lastStep; // of each column
    std::vector<int> columns;
    for (const int step : steps) {
        auto column =
            std::find_if(lastStep.begin(), lastStep.end(), [=](int last) { return step - last >= apart; });
        if (column == lastStep.end())
            column = lastStep.insert(lastStep.end(), step);
        *column = step;
        columns.push_back(static_cast<int>(column - lastStep.begin()));
    }
    return columns;
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
    std::vector<Staff_Place> sounding;
    for (std::size_t note = 0; note < shown.size(); ++note)
        if (shown[note])
            sounding.push_back(places[note]);
    // A spelling may put a higher note on a lower step.
    std::sort(sounding.begin(), sounding.end(),
              [](const Staff_Place& a, const Staff_Place& b) { return a.step < b.step; });
    std::vector<int> heads;
    std::vector<int> accidentals;
    for (const Staff_Place& place : sounding) {
        heads.push_back(place.step);
        if (place.accidental != 0)
            accidentals.push_back(place.step);
    }
    const std::vector<int> headColumns = Staff_Columns(heads, HEAD_STEPS);
    const std::vector<int> accidentalColumns = Staff_Columns(accidentals, ACCIDENTAL_STEPS);
    auto accidentalColumn = accidentalColumns.begin();
    for (std::size_t i = 0; i < sounding.size(); ++i) {
        Paint_Head(painter, sounding[i].step, headColumns[i]);
        if (sounding[i].accidental != 0)
            Paint_Accidental(painter, sounding[i], *accidentalColumn++);
    }
}

void Staff_View::Paint_Lines(QPainter& painter) const {
    painter.setPen(QPen(theme.Tokens().dim, 1));
    for (const auto& [low, high] : {std::pair{BASS_LOW, BASS_HIGH}, std::pair{TREBLE_LOW, TREBLE_HIGH}})
        for (int step = low; step <= high; step += 2)
            painter.drawLine(QPointF(0, Y_Of(step)), QPointF(width(), Y_Of(step)));
    painter.drawLine(QPointF(0.5, Y_Of(BASS_LOW)), QPointF(0.5, Y_Of(TREBLE_HIGH)));
}

void Staff_View::Paint_Head(QPainter& painter, int step, int column) const {
    const Theme_Tokens& t = theme.Tokens();
    const double half = Half_Space();
    const double middle = width() * MIDDLE + column * half * 3.4;
    painter.setPen(QPen(t.dim, 1));
    const auto ledger = [&](int line) {
        painter.drawLine(QPointF(middle - half * 2.4, Y_Of(line)), QPointF(middle + half * 2.4, Y_Of(line)));
    };
    for (int line = TREBLE_HIGH + 2; line <= step; line += 2)
        ledger(line);
    for (int line = BASS_LOW - 2; line >= step; line -= 2)
        ledger(line);
    if (step == MIDDLE_C)
        ledger(MIDDLE_C);
    painter.setPen(QPen(t.accent, half * 0.7));
    painter.setBrush(Qt::NoBrush);
    painter.save();
    painter.translate(middle, Y_Of(step));
    painter.rotate(-15);
    painter.drawEllipse(QPointF(0, 0), half * 1.5, half * 0.9);
    painter.restore();
}

void Staff_View::Paint_Accidental(QPainter& painter, const Staff_Place& place, int column) const {
    const double half = Half_Space();
    QFont face = theme.Font(Text_Size::Caption, QFont::DemiBold);
    face.setPixelSize(static_cast<int>(half * 5));
    painter.setFont(face);
    painter.setPen(theme.Tokens().text);
    const double right = width() * MIDDLE - half * (3.0 + 3.0 * column);
    const QRectF box(right - half * 5, Y_Of(place.step) - half * 4, half * 5, half * 8);
    painter.drawText(box, Qt::AlignRight | Qt::AlignVCenter,
                     place.accidental == '#' ? QString(QChar(0x266F)) : QString(QChar(0x266D)));
}

} // namespace tonvex
