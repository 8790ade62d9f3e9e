#include "widgets/effect_picture.h"

#include <QPainter>
#include <QPainterPath>

namespace tonvex {

namespace {

constexpr double HEIGHT = 128;
constexpr double LEAST_WIDTH = 240;

} // namespace

Effect_Picture::Effect_Picture(const Theme& look, Effect_Kind effectKind, QWidget* parent)
    : QWidget(parent), theme(look), kind(effectKind) {
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(&theme, &Theme::Changed, this, [this] {
        updateGeometry();
        update();
    });
}

QSize Effect_Picture::sizeHint() const {
    return {theme.Px(2 * LEAST_WIDTH), theme.Px(HEIGHT)};
}

QSize Effect_Picture::minimumSizeHint() const {
    return {theme.Px(LEAST_WIDTH), theme.Px(HEIGHT)};
}

void Effect_Picture::Show_Values(const Effect_Values& values, bool isOn) {
    figure = Figure_Of(kind, values);
    if (kind == Effect_Kind::Distortion)
        toneFigure = Tone_Of_Distortion(values);
    on = isOn;
    update();
}

Effect_Picture::Words Effect_Picture::Words_Of(bool tone) const {
    switch (kind) {
    case Effect_Kind::Reverb:
        return {tr("0 s"), tr("%1 s").arg(REVERB_SHOWN_MS / 1000.0), tr("tail: low, high frequencies")};
    case Effect_Kind::Chorus:
    case Effect_Kind::Flanger:
        return {tr("0 s"), tr("%1 s").arg(SWEEP_SHOWN_MS / 1000.0), tr("delay: left, right")};
    case Effect_Kind::Echo:
        return {tr("0 s"), tr("%1 s").arg(ECHO_SHOWN_MS / 1000.0), tr("echoes: left above, right below")};
    case Effect_Kind::Distortion:
        break;
    }
    if (tone)
        return {tr("%1 Hz").arg(LEAST_TONE_HZ), tr("%1 kHz").arg(MOST_TONE_HZ / 1000.0), tr("tone")};
    return {tr("in"), {}, tr("out")};
}

void Effect_Picture::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QRectF box = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    if (kind == Effect_Kind::Distortion) {
        const double gap = theme.Px(8);
        QRectF tone = box;
        tone.setLeft(box.left() + box.height() + gap);
        box.setWidth(box.height());
        Paint_Box(painter, tone, toneFigure, Words_Of(true));
    }
    Paint_Box(painter, box, figure, Words_Of(false));
}

void Effect_Picture::Paint_Box(QPainter& painter, const QRectF& box, const Effect_Figure& shown,
                               const Words& words) {
    const Theme_Tokens& t = theme.Tokens();
    painter.setPen(t.line);
    painter.setBrush(t.window);
    painter.drawRoundedRect(box, theme.Px(5), theme.Px(5));
    painter.setFont(theme.Font(Text_Size::Caption));
    const double line = QFontMetricsF(painter.font()).height();
    const double edge = theme.Px(6);
    const QRectF texts = box.adjusted(edge, edge / 2, -edge, -edge / 2);
    painter.setPen(t.dim);
    painter.drawText(texts, Qt::AlignTop | Qt::AlignRight, words.what);
    painter.drawText(texts, Qt::AlignBottom | Qt::AlignLeft, words.least);
    painter.drawText(texts, Qt::AlignBottom | Qt::AlignRight, words.most);

    const QRectF field = box.adjusted(edge, line + edge / 2, -edge, -line - edge / 2);
    const auto place = [&field](double x, double y) {
        return QPointF(field.left() + x * field.width(), field.bottom() - y * field.height());
    };
    const bool twoSided = kind == Effect_Kind::Echo;
    const double middle = twoSided ? 0.5 : 0.0;
    painter.setPen(QPen(t.line, 1));
    painter.drawLine(place(0, middle), place(1, middle));
    const QColor first = on ? t.accent : t.dim;
    painter.setPen(QPen(first, theme.Px(3), Qt::SolidLine, Qt::FlatCap));
    for (const Effect_Figure::Tap& tap : shown.taps)
        painter.drawLine(place(tap.x, middle), place(tap.x, middle + tap.height * (twoSided ? 0.5 : 1.0)));
    painter.setBrush(Qt::NoBrush);
    for (const Effect_Figure::Curve& curve : shown.curves) {
        QPainterPath path;
        for (const auto& [x, y] : curve.points) {
            if (path.elementCount() == 0)
                path.moveTo(place(x, y));
            else
                path.lineTo(place(x, y));
        }
        // The second one is told by its dashes, not by its colour alone.
        painter.setPen(curve.second ? QPen(t.dim, theme.Px(2), Qt::DashLine)
                                    : QPen(first, theme.Px(2), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPath(path);
    }
}

} // namespace tonvex
