#pragma once

#include "widgets/theme.h"

#include <QWidget>

#include <array>
#include <vector>

namespace tonvex {

/// The computer keyboard as drawn keys, each with its sign and with what it plays. Arrow keys move between
/// the keys that have a number, Enter or a double click asks to configure, the menu key or the right button
/// asks for the menu. Keys without a number are outlines. Interface thread.
class Keyboard_View final : public QWidget {
    Q_OBJECT
public:
    enum class Face { Off, Note, Chord, Style, Reserved };
    struct Key_Face {
        Face face = Face::Off;
        QString label;  ///< what the key plays, short
        QString told;   ///< the same as a sentence, for assistive tools
        QString sign{}; ///< what stands on the key itself
        bool operator==(const Key_Face&) const = default;
    };
    static constexpr int KEYS = 256;

    explicit Keyboard_View(const Theme& theme, QWidget* parent = nullptr);

    void Set_Face(int key, const Key_Face& face);
    const Key_Face& Shown(int key) const { return faces[static_cast<std::size_t>(key)]; }
    void Set_Pressed(int key, bool pressed);
    bool Is_Pressed(int key) const;
    void Clear_Pressed();
    int Current() const noexcept { return current; }
    void Select(int key);
    /// Index among the drawn keys of the one with this number, 0 for none.
    int Convert_KeyN_to_LabelN(int key) const;
    /// Empty for a key that is not drawn.
    QRectF Key_Rect(int key) const;
    /// What stands on each key; empty for keys that are not drawn with a sign.
    static std::array<QString, KEYS> Signs();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void currentChanged(int key);
    void configureAsked(int key);
    void menuAsked(int key, const QPoint& globalPlace);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;

private:
    QRectF Place_Rect(std::size_t place) const;
    double Unit() const;
    int Key_At(QPointF point) const;
    void Step(int columns, int rows);
    void Paint_Key(QPainter& painter, std::size_t place);
    void Update_Key(int key);

    const Theme& theme;
    std::array<Key_Face, KEYS> faces;
    std::array<bool, KEYS> pressed{};
    int current = 44;
};

} // namespace tonvex
