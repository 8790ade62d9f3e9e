#pragma once

#include "widgets/theme.h"

#include <QToolButton>

namespace tonvex {

/// Where a button stands decides its size and its ground.
enum class Button_Kind {
    Flat,      ///< 28 wide, ground only under the pointer
    Boxed,     ///< 36 wide, on its own ground; checked: outlined
    Transport, ///< 44 wide, the three great ones
    Letter,    ///< 20 wide, a letter (mute, solo); checked: filled in the state's colour
    Pill,      ///< as wide as its caption and value
    Caption    ///< a dim line of text that brightens under the pointer, cut to its box
};
enum class Icon_Tint { Text, Record, Play };

/// Every button of the window's bars and rows. Reports itself to assistive tools as a tool button under its
/// accessible name; the tool tip is that name with the key.
class Tool_Button final : public QToolButton {
    Q_OBJECT
public:
    /// name: what the button does, for tool tip and assistive tools. key: as shown to the user, may be empty.
    Tool_Button(const Theme& theme, Button_Kind kind, const QString& picture, const QString& name,
                const QString& key = {}, QWidget* parent = nullptr);

    void Set_Tint(Icon_Tint tint);
    void Set_Name(const QString& name, const QString& key);
    /// Pill: caption in a dim face, then the value.
    void Set_Pill(const QString& caption, const QString& value);
    /// Pill: wide enough for this value, so that its neighbours do not move.
    void Reserve_For(const QString& widestValue);
    void Set_Letter(const QString& letter);
    /// On ground in the colour of controls (the selected row) the button takes the next lighter one.
    void Set_On_Control(bool on);
    /// A filled dot while armed, an empty one else (the record mark of a row).
    void Set_Dot(bool armed);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void Paint_Face(QPainter& painter, const QRectF& box);
    int Pill_Width() const;

    const Theme& theme;
    Button_Kind kind;
    QString picture;
    QString caption;
    QString value;
    QString widest;
    QString letter;
    Icon_Tint tint = Icon_Tint::Text;
    bool onControl = false;
    bool dot = false;
    bool armed = false;
};

/// The ring of accent around what has the focus, 2 wide, inside rect.
void Paint_Focus_Ring(QPainter& painter, const Theme& theme, const QRectF& rect, double radius);

} // namespace tonvex
