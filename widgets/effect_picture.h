#pragma once

#include "platform/effects/effect_settings.h"
#include "widgets/effect_figures.h"
#include "widgets/theme.h"

#include <QWidget>

namespace tonvex {

/// The picture of an effect's values: a reverb's tail, the taps of an echo, the swinging delays of a chorus,
/// the transfer curve and the tone of a distortion. It says nothing that the figures beside it do not.
class Effect_Picture final : public QWidget {
    Q_OBJECT
public:
    Effect_Picture(const Theme& theme, Effect_Kind kind, QWidget* parent = nullptr);
    /// isOn: drawn in the colour of values, else dim.
    void Show_Values(const Effect_Values& values, bool isOn);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Words {
        QString least; ///< at the left end of the axis
        QString most;  ///< at its right end
        QString what;  ///< of the upward axis
    };
    Words Words_Of(bool tone) const;
    void Paint_Box(QPainter& painter, const QRectF& box, const Effect_Figure& figure, const Words& words);

    const Theme& theme;
    Effect_Kind kind;
    Effect_Figure figure;
    Effect_Figure toneFigure; ///< distortion
    bool on = false;
};

} // namespace tonvex
