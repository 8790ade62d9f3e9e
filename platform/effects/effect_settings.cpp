#include "platform/effects/effect_settings.h"

#include <algorithm>
#include <cmath>

namespace tonvex {

namespace {

// The ranges and the neutral values are those published for the effect records that songs carry.
constexpr std::array<Effect_Parameter, 4> REVERB = {
    {{"Input gain", "dB", -96.0F, 0.0F, 0.0F, false},
     {"Reverb mix", "dB", -96.0F, 0.0F, 0.0F, false},
     {"Reverb time", "ms", 0.001F, 3000.0F, 1000.0F, false},
     {"High frequency ratio", "", 0.001F, 0.999F, 0.001F, false}}};
constexpr std::array<Effect_Parameter, 7> CHORUS = {{{"Wet/dry mix", "%", 0.0F, 100.0F, 50.0F, false},
                                                     {"Depth", "%", 0.0F, 100.0F, 10.0F, false},
                                                     {"Feedback", "%", -99.0F, 99.0F, 25.0F, false},
                                                     {"Frequency", "Hz", 0.0F, 10.0F, 1.1F, false},
                                                     {"Waveform", "", 0.0F, 1.0F, 1.0F, true},
                                                     {"Delay", "ms", 0.0F, 20.0F, 16.0F, false},
                                                     {"Phase", "", 0.0F, 4.0F, 3.0F, true}}};
constexpr std::array<Effect_Parameter, 7> FLANGER = {{{"Wet/dry mix", "%", 0.0F, 100.0F, 50.0F, false},
                                                      {"Depth", "%", 0.0F, 100.0F, 100.0F, false},
                                                      {"Feedback", "%", -99.0F, 99.0F, -50.0F, false},
                                                      {"Frequency", "Hz", 0.0F, 10.0F, 0.25F, false},
                                                      {"Waveform", "", 0.0F, 1.0F, 1.0F, true},
                                                      {"Delay", "ms", 0.0F, 4.0F, 2.0F, false},
                                                      {"Phase", "", 0.0F, 4.0F, 2.0F, true}}};
constexpr std::array<Effect_Parameter, 5> ECHO = {{{"Wet/dry mix", "%", 0.0F, 100.0F, 50.0F, false},
                                                   {"Feedback", "%", 0.0F, 100.0F, 50.0F, false},
                                                   {"Left delay", "ms", 1.0F, 2000.0F, 500.0F, false},
                                                   {"Right delay", "ms", 1.0F, 2000.0F, 500.0F, false},
                                                   {"Swap sides", "", 0.0F, 1.0F, 0.0F, true}}};
constexpr std::array<Effect_Parameter, 5> DISTORTION = {
    {{"Gain", "dB", -60.0F, 0.0F, -18.0F, false},
     {"Edge", "%", 0.0F, 100.0F, 15.0F, false},
     {"Centre frequency", "Hz", 100.0F, 8000.0F, 2400.0F, false},
     {"Bandwidth", "Hz", 100.0F, 8000.0F, 2400.0F, false},
     {"Lowpass before", "Hz", 100.0F, 8000.0F, 8000.0F, false}}};

} // namespace

std::span<const Effect_Parameter> Parameters_Of(Effect_Kind kind) noexcept {
    switch (kind) {
    case Effect_Kind::Reverb:
        return REVERB;
    case Effect_Kind::Chorus:
        return CHORUS;
    case Effect_Kind::Flanger:
        return FLANGER;
    case Effect_Kind::Echo:
        return ECHO;
    case Effect_Kind::Distortion:
        return DISTORTION;
    }
    return {};
}

Effect_Values Neutral_Values(Effect_Kind kind) noexcept {
    Effect_Values values{};
    std::size_t i = 0;
    for (const Effect_Parameter& parameter : Parameters_Of(kind))
        values[i++] = parameter.neutral;
    return values;
}

Effect_Values Bounded(Effect_Kind kind, const Effect_Values& values) noexcept {
    Effect_Values bounded{};
    std::size_t i = 0;
    for (const Effect_Parameter& parameter : Parameters_Of(kind)) {
        float value = std::isnan(values[i]) ? parameter.neutral
                                            : std::clamp(values[i], parameter.least, parameter.most);
        if (parameter.whole)
            value = std::trunc(value);
        bounded[i++] = value;
    }
    return bounded;
}

Effect_Settings::Effect_Settings() noexcept {
    for (const Effect_Kind kind : ALL_EFFECTS)
        values[static_cast<std::size_t>(kind)] = Neutral_Values(kind);
}

bool Effect_Settings::Any_On() const noexcept {
    return std::find(on.begin(), on.end(), true) != on.end();
}

} // namespace tonvex
