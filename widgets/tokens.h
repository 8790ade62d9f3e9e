#pragma once

#include <QColor>
#include <QString>

#include <array>
#include <vector>

namespace tonvex {

/// The colours of one palette. Nothing else in the program names a colour.
struct Theme_Tokens {
    bool dark = true;
    QColor window;  ///< behind everything
    QColor panel;   ///< panes, bars, editors
    QColor control; ///< buttons, pills, the selected row
    QColor hover;   ///< under the pointer, tracks of sliders
    QColor line;    ///< borders of one pixel
    QColor text;
    QColor dim;      ///< captions
    QColor accent;   ///< selection, values, focus ring
    QColor onAccent; ///< text and icons on accent
    QColor record;   ///< states only, as are the next two
    QColor play;
    QColor soloMute;
    QColor onState; ///< text on solo-mute
    QColor gridBar; ///< editors
    QColor gridBeat;
    QColor ivory;    ///< white keys of a piano, and what is written on black ones
    QColor ebony;    ///< black keys, and what is written on white ones
    QColor keyLine;  ///< between white keys
    QColor keyLabel; ///< octave names on white keys
    /// By order of the row, kept with it; decoration only.
    std::array<QColor, 8> channels;

    const QColor& Channel(int row) const { return channels[static_cast<std::size_t>(row < 0 ? 0 : row) % 8]; }

    static const Theme_Tokens& Dark();
    static const Theme_Tokens& Light();
};

/// Contrast of two opaque colours, 1 to 21: (lighter + 0.05) / (darker + 0.05) of the relative luminances
/// of sRGB (WCAG 2).
double Contrast_Ratio(const QColor& a, const QColor& b);

/// One foreground on one background that the program really draws.
struct Colour_Pair {
    const char* use;
    QColor front;
    QColor back;
    double least; ///< 4.5 for text; 3 for icons, focus rings, value fills
};
/// Every pair in use. A widget that draws a new one adds it here.
std::vector<Colour_Pair> Pairs_In_Use(const Theme_Tokens& tokens);

} // namespace tonvex
