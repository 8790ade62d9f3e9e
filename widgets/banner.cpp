#include "widgets/banner.h"

#include "widgets/tool_button.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace tonvex {

namespace {

constexpr int LOW_WINDOW = 600;

} // namespace

/// One line. An offer has the accent; all else is a warning.
class Banner::Notice final : public QWidget {
public:
    Notice(const Theme& look, bool isOffer, QWidget* parent)
        : QWidget(parent), theme(look), offer(isOffer), sign(new QLabel(this)), label(new QLabel(this)),
          button(new QPushButton(this)),
          close(new Tool_Button(theme, Button_Kind::Flat, QStringLiteral("close"),
                                Banner::tr("Close this notice"))) {
        auto* row = new QHBoxLayout(this);
        row->setContentsMargins(theme.Px(16), theme.Px(4), theme.Px(8), theme.Px(4));
        row->setSpacing(theme.Px(12));
        row->addWidget(sign);
        row->addWidget(label, 1);
        row->addWidget(button);
        row->addWidget(close);
        label->setWordWrap(true);
        connect(&theme, &Theme::Changed, this, &Notice::Paint_Sign);
        Paint_Sign();
        hide();
    }
    void Set_Text(const QString& text, const QString& actionText) {
        label->setText(text);
        setAccessibleName(text);
        button->setText(actionText);
        button->setVisible(!actionText.isEmpty());
    }
    /// A layout that knows nothing of texts in lines is told the height.
    void Fit(int wide) {
        const QMargins edges = layout()->contentsMargins();
        int room = wide - edges.left() - edges.right();
        for (const QWidget* other : std::initializer_list<const QWidget*>{sign, button, close})
            if (!other->isHidden())
                room -= other->sizeHint().width() + layout()->spacing();
        setFixedHeight(std::max(button->sizeHint().height(), label->heightForWidth(std::max(room, 1))) +
                       edges.top() + edges.bottom());
    }
    QPushButton& Button() { return *button; }
    Tool_Button& Cross() { return *close; }

    std::function<void()> act;

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), theme.Tokens().control);
        painter.fillRect(QRect(0, 0, theme.Px(4), height()), Colour());
        painter.fillRect(QRect(0, height() - 1, width(), 1), theme.Tokens().line);
    }

private:
    QColor Colour() const { return offer ? theme.Tokens().accent : theme.Tokens().soloMute; }
    void Paint_Sign() {
        sign->setPixmap(theme.Picture(offer ? QStringLiteral("help") : QStringLiteral("warning"), Colour(),
                                      theme.Px(18), devicePixelRatioF()));
        update();
    }

    const Theme& theme;
    const bool offer;
    QLabel* sign;
    QLabel* label;
    QPushButton* button;
    Tool_Button* close;
};

Banner::Banner(const Theme& look, QWidget* parent)
    : QWidget(parent), theme(look), column(new QVBoxLayout(this)) {
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
}

void Banner::Show_Notice(Subject subject, const QString& text, const QString& actionText,
                         const std::function<void()>& action) {
    Notice*& notice = notices[subject];
    if (notice == nullptr) {
        notice = new Notice(theme, subject == Subject::First_Steps, this);
        connect(&notice->Cross(), &QToolButton::clicked, this, [this, subject] { Hide_Notice(subject); });
        connect(&notice->Button(), &QPushButton::clicked, this, [this, subject, shown = notice] {
            Hide_Notice(subject);
            // The action may put the next notice here, so it is taken out first.
            const auto act = std::exchange(shown->act, {});
            if (act)
                act();
        });
    }
    notice->act = action;
    notice->Set_Text(text, actionText);
    column->insertWidget(0, notice);
    std::erase(standing, notice);
    standing.insert(standing.begin(), notice);
    Refresh();
}

void Banner::Hide_Notice(Subject subject) {
    const auto found = notices.find(subject);
    if (found == notices.end())
        return;
    std::erase(standing, found->second);
    found->second->hide();
    Refresh();
}

void Banner::Refresh() {
    Fit();
    emit anyShown(!standing.empty());
}

void Banner::Fit() {
    const bool low = window()->height() < theme.Px(LOW_WINDOW);
    // The oldest first: one that is shown beside another that is to go would ask a low window to grow.
    for (auto notice = standing.rbegin(); notice != standing.rend(); ++notice) {
        (*notice)->Fit(isVisible() ? width() : window()->width());
        (*notice)->setVisible(!low || *notice == standing.front());
    }
}

void Banner::resizeEvent(QResizeEvent*) {
    Fit();
}

} // namespace tonvex
