#pragma once

#include "widgets/theme.h"

#include <QWidget>

#include <functional>

class QLabel;
class QPushButton;

namespace tonvex {

class Tool_Button;

/// A notice across the window that blocks nothing: a text, perhaps a button, and a cross that closes it.
class Banner final : public QWidget {
    Q_OBJECT
public:
    explicit Banner(const Theme& theme, QWidget* parent = nullptr);
    void Show_Notice(const QString& text, const QString& actionText, std::function<void()> action);
    QString Text() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme;
    QLabel* sign;
    QLabel* label;
    QPushButton* button;
    std::function<void()> act;
};

} // namespace tonvex
