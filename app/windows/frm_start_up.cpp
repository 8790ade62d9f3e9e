#include "app/windows/frm_start_up.h"

#include <QGuiApplication>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>

namespace tonvex {

namespace {

constexpr int TIMER_MS = 100;
constexpr int PICTURE = 72;

} // namespace

frmStartUp::frmStartUp(const Theme& theTheme)
    : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint), theme(theTheme) {
    setAttribute(Qt::WA_DeleteOnClose);
    // The program goes on when this window closes, whatever other windows there are.
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(tr("Tonvex"));
    setObjectName(QStringLiteral("frmStartUp"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(theme.Px(48), theme.Px(40), theme.Px(48), theme.Px(40));
    layout->setSpacing(theme.Px(8));
    auto* picture = new QLabel(this);
    picture->setPixmap(QIcon(QStringLiteral(":/icons/tonvex.svg")).pixmap(theme.Px(PICTURE)));
    picture->setAlignment(Qt::AlignCenter);
    picture->setAccessibleName(tr("The sign of Tonvex"));
    auto* name = new QLabel(tr("Tonvex"), this);
    name->setFont(theme.Font(Text_Size::Display, QFont::DemiBold));
    name->setAlignment(Qt::AlignCenter);
    auto* version = new QLabel(tr("Version: ") + QStringLiteral(TONVEX_VERSION), this);
    version->setObjectName(QStringLiteral("version"));
    version->setAlignment(Qt::AlignCenter);
    for (QLabel* label : {picture, name, version})
        layout->addWidget(label);
    setFixedSize(layout->sizeHint().expandedTo(QSize(theme.Px(320), theme.Px(200))));
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
    sinceOpened.start();
    connect(&timer, &QTimer::timeout, this, [this] {
        if (sinceOpened.elapsed() > SHOWN_MS)
            close();
    });
    timer.start(TIMER_MS);
}

void frmStartUp::keyPressEvent(QKeyEvent*) {
    close();
}

void frmStartUp::mousePressEvent(QMouseEvent*) {
    close();
}

void frmStartUp::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), theme.Tokens().panel);
    painter.setPen(theme.Tokens().line);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

} // namespace tonvex
