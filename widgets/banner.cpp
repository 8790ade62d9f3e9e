#include "widgets/banner.h"

#include "widgets/tool_button.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

namespace tonvex {

Banner::Banner(const Theme& look, QWidget* parent)
    : QWidget(parent), theme(look), sign(new QLabel(this)), label(new QLabel(this)),
      button(new QPushButton(this)) {
    auto* close = new Tool_Button(theme, Button_Kind::Flat, QStringLiteral("close"), tr("Close this notice"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(theme.Px(16), theme.Px(4), theme.Px(8), theme.Px(4));
    row->setSpacing(theme.Px(12));
    row->addWidget(sign);
    row->addWidget(label, 1);
    row->addWidget(button);
    row->addWidget(close);
    label->setWordWrap(true);
    connect(close, &QToolButton::clicked, this, &QWidget::hide);
    connect(button, &QPushButton::clicked, this, [this] {
        hide();
        // The action may put the next notice here, so it is taken out first.
        const auto action = std::exchange(act, {});
        if (action)
            action();
    });
    const auto paintSign = [this] {
        sign->setPixmap(theme.Picture(QStringLiteral("warning"), theme.Tokens().soloMute, theme.Px(18),
                                      devicePixelRatioF()));
    };
    connect(&theme, &Theme::Changed, this, paintSign);
    paintSign();
    hide();
}

void Banner::Show_Notice(const QString& text, const QString& actionText, std::function<void()> action) {
    label->setText(text);
    setAccessibleName(text);
    button->setText(actionText);
    button->setVisible(!actionText.isEmpty());
    act = std::move(action);
    show();
}

QString Banner::Text() const {
    return label->text();
}

void Banner::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), theme.Tokens().control);
    painter.fillRect(QRect(0, 0, theme.Px(4), height()), theme.Tokens().soloMute);
    painter.fillRect(QRect(0, height() - 1, width(), 1), theme.Tokens().line);
}

} // namespace tonvex
