#include "app/windows/frm_mouse_status.h"

#include <QApplication>
#include <QCursor>
#include <QScreen>

namespace tonvex {

namespace {

constexpr int FOLLOW_MS = 40;
constexpr int GAP = 16;
constexpr int MARGIN = 6;

} // namespace

frmMouseStatus::frmMouseStatus(const Theme& theTheme)
    : QLabel(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowTransparentForInput),
      theme(theTheme) {
    setObjectName(QStringLiteral("frmMouseStatus"));
    setWindowTitle(tr("Mouse status"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    setAutoFillBackground(true);
    setMargin(theme.Px(MARGIN));
    connect(&timer, &QTimer::timeout, this, &frmMouseStatus::Follow);
    timer.start(FOLLOW_MS);
    Follow();
}

QPoint frmMouseStatus::Place(QPoint mouse, QSize window, const QRect& screen, int gap) {
    QPoint place = mouse + QPoint(gap, gap);
    if (place.x() + window.width() > screen.x() + screen.width())
        place.setX(mouse.x() - gap - window.width());
    if (place.y() + window.height() > screen.y() + screen.height())
        place.setY(mouse.y() - gap - window.height());
    return place;
}

void frmMouseStatus::Follow() {
    const QPoint mouse = QCursor::pos();
    const QWidget* under = QApplication::widgetAt(mouse);
    QString text = QStringLiteral("%1, %2").arg(mouse.x()).arg(mouse.y());
    if (under != nullptr && !under->accessibleName().isEmpty())
        text += QStringLiteral("\n") + under->accessibleName();
    setText(text);
    adjustSize();
    if (const QScreen* on = QApplication::screenAt(mouse))
        move(Place(mouse, size(), on->geometry(), theme.Px(GAP)));
}

} // namespace tonvex
