#include "widgets/transport_display.h"

#include "song/time_text.h"

#include <QLineEdit>
#include <QPainter>
#include <QSpinBox>

namespace tonvex {

namespace {

constexpr int BASE_LINE = 30; ///< of the digits, from the top

} // namespace

Transport_Display::Transport_Display(const Theme& look, QWidget* parent)
    : QFrame(parent), theme(look), tempoBox(new QSpinBox(this)) {
    setAccessibleName(tr("Position"));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    tempoBox->setRange(LEAST_TEMPO, MOST_TEMPO);
    tempoBox->setButtonSymbols(QAbstractSpinBox::NoButtons);
    tempoBox->setKeyboardTracking(false);
    tempoBox->setFrame(false);
    tempoBox->setAccessibleName(tr("Tempo in beats per minute"));
    tempoBox->setToolTip(tr("Tempo in beats per minute (type, wheel or arrow keys)"));
    connect(tempoBox, &QSpinBox::valueChanged, this, [this](int tempo) {
        if (tempo != shownTempo)
            emit tempoEntered(tempo);
    });
    connect(&theme, &Theme::Changed, this, &Transport_Display::Take_Theme);
    Take_Theme();
    Show_Position(0.0, 0);
}

void Transport_Display::Take_Theme() {
    const Theme_Tokens& t = theme.Tokens();
    tempoBox->setFont(theme.Digits(Text_Size::Title));
    // The spin box stands in the display without a frame of its own until it has the focus.
    tempoBox->setStyleSheet(
        QStringLiteral("QSpinBox { background: transparent; border: 0; padding: 0; color: %1; font-family: "
                       "'%4'; font-size: %2px; font-weight: 600; min-height: 0; }"
                       "QSpinBox:focus { border: 2px solid %3; border-radius: 4px; padding: 0; }")
            .arg(t.text.name())
            .arg(theme.Px(17))
            .arg(t.accent.name(), theme.Digits(Text_Size::Title).family()));
    updateGeometry();
    update();
}

QSize Transport_Display::sizeHint() const {
    return {theme.Px(236), theme.Px(56)};
}

QRect Transport_Display::Bar_Place() const {
    return {theme.Px(16), 0, theme.Px(92), height()};
}

QRect Transport_Display::Time_Place() const {
    return {theme.Px(112), 0, theme.Px(72), height()};
}

QRect Transport_Display::Tempo_Place() const {
    return {theme.Px(188), 0, theme.Px(40), height()};
}

void Transport_Display::resizeEvent(QResizeEvent*) {
    const QRect place = Tempo_Place();
    // On one line with the time: a spin box centres its text.
    const QFontMetrics digits(theme.Digits(Text_Size::Title));
    const int boxHeight = theme.Px(26);
    const int middle = theme.Px(BASE_LINE) - (digits.ascent() - digits.descent()) / 2;
    tempoBox->setGeometry(place.left() - theme.Px(2), middle - boxHeight / 2, place.width() + theme.Px(4),
                          boxHeight);
}

void Transport_Display::Show_Position(double beats, std::int64_t songMs) {
    const QString bar = QString::fromStdString(Format_Beats(beats));
    const std::int64_t tenths = songMs / 100;
    const QString time = QStringLiteral("%1:%2:%3")
                             .arg(tenths / 600)
                             .arg(tenths / 10 % 60, 2, 10, QLatin1Char('0'))
                             .arg(tenths % 10);
    if (bar == barText && time == timeText)
        return;
    if (bar != barText) {
        barText = bar;
        update(Bar_Place());
    }
    if (time != timeText) {
        timeText = time;
        update(Time_Place());
    }
    setAccessibleDescription(tr("Bar and beat %1, time %2").arg(barText, timeText));
}

void Transport_Display::Show_Tempo(int tempo) {
    shownTempo = tempo;
    if (!tempoBox->hasFocus() || tempoBox->value() != tempo)
        tempoBox->setValue(tempo);
}

void Transport_Display::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Theme_Tokens& t = theme.Tokens();
    painter.setPen(t.line);
    painter.setBrush(t.window);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), theme.Px(10), theme.Px(10));

    const int base = theme.Px(BASE_LINE);
    painter.setPen(t.text);
    painter.setFont(theme.Digits(Text_Size::Display, QFont::Bold));
    painter.drawText(QPoint(Bar_Place().left(), base), barText);
    painter.setFont(theme.Digits(Text_Size::Title));
    painter.drawText(QPoint(Time_Place().left(), base), timeText);
    painter.setPen(t.dim);
    painter.setFont(theme.Font(Text_Size::Caption));
    const int captionBase = theme.Px(47);
    painter.drawText(QPoint(Bar_Place().left(), captionBase), tr("bar : beat"));
    painter.drawText(QPoint(Time_Place().left(), captionBase), tr("time"));
    painter.drawText(QPoint(Tempo_Place().left(), captionBase), tr("BPM"));
}

} // namespace tonvex
