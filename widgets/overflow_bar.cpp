#include "widgets/overflow_bar.h"

#include "widgets/tool_button.h"

#include <QHBoxLayout>
#include <QMenu>

#include <algorithm>

namespace tonvex {

namespace {

/// What an item of the row needs, whether it is shown now or not.
int Least_Width(QLayoutItem& item) {
    const QWidget* widget = item.widget();
    if (widget == nullptr)
        return item.minimumSize().width();
    const int hint = widget->sizePolicy().horizontalPolicy() == QSizePolicy::Ignored
                         ? 0
                         : widget->minimumSizeHint().width();
    return std::clamp(hint, widget->minimumWidth(), widget->maximumWidth());
}

} // namespace

Overflow_Bar::Overflow_Bar(const Theme& look, QWidget* parent)
    : QWidget(parent), theme(look), row(new QHBoxLayout(this)),
      more(new Tool_Button(theme, Button_Kind::Flat, QStringLiteral("more"), tr("More of this bar"), {},
                           this)),
      menu(new QMenu(more)) {
    row->setSizeConstraint(QLayout::SetNoConstraint); // its least width is what minimumSizeHint says
    more->setObjectName(QStringLiteral("more"));
    more->setMenu(menu);
    more->setPopupMode(QToolButton::InstantPopup);
    more->hide();
    menu->setToolTipsVisible(true);
    connect(menu, &QMenu::aboutToShow, this, &Overflow_Bar::Fill_Menu);
    connect(&theme, &Theme::Changed, this, [this] {
        updateGeometry();
        Fit();
    });
}

void Overflow_Bar::Let_Go(QWidget* control) {
    mayGo.push_back(control);
    row->addWidget(more); // behind what came meanwhile
    updateGeometry();
}

int Overflow_Bar::Width_Without(std::size_t gone) const {
    const QMargins edges = row->contentsMargins();
    int width = edges.left() + edges.right();
    const auto shown = mayGo.begin() + static_cast<std::ptrdiff_t>(gone);
    for (int i = 0; i < row->count(); ++i) {
        QLayoutItem& item = *row->itemAt(i);
        if (std::find(mayGo.begin(), shown, item.widget()) != shown || (item.widget() == more && gone == 0))
            continue;
        width += Least_Width(item) + row->spacing();
    }
    return width;
}

QSize Overflow_Bar::minimumSizeHint() const {
    return {Width_Without(mayGo.size()), QWidget::minimumSizeHint().height()};
}

void Overflow_Bar::resizeEvent(QResizeEvent*) {
    Fit();
}

void Overflow_Bar::Fit() {
    std::size_t gone = 0;
    while (gone < mayGo.size() && Width_Without(gone) > width())
        ++gone;
    for (std::size_t i = 0; i < mayGo.size(); ++i)
        if (mayGo[i]->isHidden() != (i < gone))
            mayGo[i]->setVisible(i >= gone);
    if (more->isHidden() != (gone == 0))
        more->setVisible(gone > 0);
}

void Overflow_Bar::Fill_Menu() {
    menu->clear();
    // In the order of the bar.
    for (int i = 0; i < row->count(); ++i) {
        auto* button = qobject_cast<Tool_Button*>(row->itemAt(i)->widget());
        if (button == nullptr || button == more || !button->isHidden())
            continue;
        QAction* action = nullptr;
        if (button->menu() != nullptr) {
            action = menu->addMenu(button->menu());
            action->setText(button->accessibleName());
        } else {
            action = menu->addAction(button->accessibleName(), button, &QToolButton::click);
            action->setCheckable(button->isCheckable());
            action->setChecked(button->isChecked());
        }
        action->setToolTip(button->toolTip());
        action->setEnabled(button->isEnabled());
    }
}

} // namespace tonvex
