#pragma once

#include "platform/settings_store.h"
#include "widgets/tokens.h"

#include <QApplication>
#include <QFont>
#include <QIcon>
#include <QObject>
#include <QPalette>
#include <QPixmap>

namespace tonvex {

enum class Appearance { FollowDesktop, Light, Dark };

/// Sizes of text in pixels at 100 %, multiples of the font's own unit.
enum class Text_Size { Caption = 11, Body = 13, Lead = 15, Title = 17, Display = 24 };

/// The look of the whole program: palette, style, fonts, icons. One object, made before the first window and
/// handed to each widget of ours. Interface thread.
/// Widgets repaint on Changed; standard controls follow the application's palette and style sheet.
class Theme final : public QObject {
    Q_OBJECT
public:
    /// Sets the style of the application and follows the choice kept in the store, which outlives the theme.
    Theme(QApplication& application, Settings_Store& settingsStore);

    const Theme_Tokens& Tokens() const noexcept { return *tokens; }
    Appearance Current() const noexcept { return appearance; }
    /// Applies and keeps the choice.
    void Set_Appearance(Appearance wanted);
    /// Palette and sheet again, after the desktop's palette or font changed.
    void Refresh();

    /// Screen pixels of a length that is told at 100 %.
    int Px(double designPixels) const;
    double Scale() const noexcept { return scale; }
    /// The size of texts and controls against the desktop's, 1.0 to 3.0.
    void Set_Text_Scale(double factor);
    double Text_Scale() const noexcept { return textScale; }
    /// The same in per cent, kept for the next start.
    void Keep_Text_Percent(int percent);

    QFont Font(Text_Size size, QFont::Weight weight = QFont::Normal) const;
    /// Digits of equal width.
    QFont Digits(Text_Size size, QFont::Weight weight = QFont::DemiBold) const;

    /// The stroke picture data/icons/<name>.svg in one colour, edge long. Cached.
    QPixmap Picture(const QString& name, const QColor& colour, int edge, double devicePixelRatio) const;
    QIcon Icon(const QString& name) const;

signals:
    void Changed();

private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool Desktop_Is_Dark() const;
    void Apply();
    QString Sheet() const;

    QApplication& app;
    Settings_Store& store;
    const Theme_Tokens* tokens;
    Appearance appearance = Appearance::FollowDesktop;
    QPalette desktopPalette;
    QFont desktopFont;
    QString family;
    QString digitFamily;
    double textScale = 1.0;
    double scale = 1.0;
    bool applying = false;
};

} // namespace tonvex
