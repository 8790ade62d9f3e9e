#include "widgets/tokens.h"

#include <algorithm>
#include <cmath>

namespace tonvex {

namespace {

constexpr double TEXT = 4.5;
constexpr double SHAPE = 3.0;

const std::array<QColor, 8> CHANNEL_COLOURS{QColor(0x57a6f5), QColor(0xf0a44b), QColor(0x8bc46a),
                                            QColor(0xe57aa5), QColor(0xa98bf0), QColor(0x4cc0b5),
                                            QColor(0xe5c04c), QColor(0xef7d5c)};

Theme_Tokens Make_Dark() {
    Theme_Tokens t;
    t.dark = true;
    t.window = QColor(0x15171c);
    t.panel = QColor(0x1c1f26);
    t.control = QColor(0x272b34);
    t.hover = QColor(0x323845);
    t.line = QColor(0x363c48);
    t.text = QColor(0xe9ebef);
    t.dim = QColor(0x9aa2af);
    t.accent = QColor(0x57a6f5);
    t.onAccent = QColor(0x15171c);
    t.record = QColor(0xef5350);
    t.play = QColor(0x4caf6d);
    t.soloMute = QColor(0xe5a53a);
    t.onState = QColor(0x15171c);
    t.gridBar = QColor(0x3a414e);
    t.gridBeat = QColor(0x282d37);
    t.ivory = QColor(0xf4f5f7);
    t.ebony = QColor(0x1c2027);
    t.keyLine = QColor(0x9aa2af);
    t.keyLabel = QColor(0x5b6472);
    t.channels = CHANNEL_COLOURS;
    return t;
}

Theme_Tokens Make_Light() {
    Theme_Tokens t;
    t.dark = false;
    t.window = QColor(0xeef0f3);
    t.panel = QColor(0xffffff);
    t.control = QColor(0xe9ecf0);
    t.hover = QColor(0xdde2e9);
    t.line = QColor(0xcfd5dd);
    t.text = QColor(0x1c2027);
    t.dim = QColor(0x5b6472);
    t.accent = QColor(0x1e6fd0);
    t.onAccent = QColor(0xffffff);
    t.record = QColor(0xd32f2f);
    t.play = QColor(0x2e7d46);
    t.soloMute = QColor(0xb7791f);
    t.onState = QColor(0x15171c);
    t.gridBar = QColor(0xc3cad4);
    t.gridBeat = QColor(0xe3e7ec);
    t.ivory = QColor(0xf4f5f7);
    t.ebony = QColor(0x1c2027);
    t.keyLine = QColor(0xcfd5dd);
    t.keyLabel = QColor(0x5b6472);
    t.channels = CHANNEL_COLOURS;
    return t;
}

double Linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& colour) {
    return 0.2126 * Linear(colour.redF()) + 0.7152 * Linear(colour.greenF()) +
           0.0722 * Linear(colour.blueF());
}

} // namespace

const Theme_Tokens& Theme_Tokens::Dark() {
    static const Theme_Tokens tokens = Make_Dark();
    return tokens;
}

const Theme_Tokens& Theme_Tokens::Light() {
    static const Theme_Tokens tokens = Make_Light();
    return tokens;
}

double Contrast_Ratio(const QColor& a, const QColor& b) {
    const double la = Luminance(a);
    const double lb = Luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

std::vector<Colour_Pair> Pairs_In_Use(const Theme_Tokens& t) {
    std::vector<Colour_Pair> pairs{
        {"text on window", t.text, t.window, TEXT},
        {"text on panel", t.text, t.panel, TEXT},
        {"text on control", t.text, t.control, TEXT},
        {"text on hover", t.text, t.hover, TEXT},
        {"caption on window", t.dim, t.window, TEXT},
        {"caption on panel", t.dim, t.panel, TEXT},
        {"caption on control", t.dim, t.control, TEXT},
        {"caption on hover", t.dim, t.hover, TEXT},
        {"text on accent", t.onAccent, t.accent, TEXT},
        {"letter of an active M or S", t.onState, t.soloMute, TEXT},
        {"letter on a white key", t.ebony, t.ivory, TEXT},
        {"octave name on a white key", t.keyLabel, t.ivory, TEXT},
        {"letter on a black key", t.ivory, t.ebony, TEXT},
        {"focus ring on window", t.accent, t.window, SHAPE},
        {"focus ring on panel", t.accent, t.panel, SHAPE},
        {"focus ring on control", t.accent, t.control, SHAPE},
        {"icon of a checked button", t.accent, t.hover, SHAPE},
        {"value fill on its track", t.accent, t.hover, SHAPE},
        {"pan mark on its track", t.text, t.hover, SHAPE},
        {"record sign on a button", t.record, t.control, SHAPE},
        {"record sign under the pointer", t.record, t.hover, SHAPE},
        {"armed dot on a row", t.record, t.panel, SHAPE},
        {"play sign on a button", t.play, t.control, SHAPE},
        {"play sign under the pointer", t.play, t.hover, SHAPE},
        {"active M or S on a row", t.soloMute, t.panel, SHAPE},
        {"active M or S on the selected row", t.soloMute, t.control, SHAPE},
        {"play line in an editor", t.record, t.panel, SHAPE},
        {"idle icon on a button", t.dim, t.control, SHAPE},
        {"grip of a scroll thumb", t.panel, t.dim, SHAPE},
    };
    return pairs;
}

} // namespace tonvex
