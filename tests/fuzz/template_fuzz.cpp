// Any bytes as a channel template: they are read, their effects are bounded, and what is written of them is
// read as the same again.

#include "fuzz/require.h"
#include "project/channel_template.h"

#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tonvex;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const ChannelTemplate read = Parse_Template(text, true);
    Require(read.EffectCount >= 0 && read.EffectCount <= static_cast<int>(ChannelTemplate::MOST_EFFECTS),
            "more effects than rows");
    const Effect_Settings effects = read.Effects();
    for (const Effect_Kind kind : ALL_EFFECTS)
        Require(effects.Of(kind) == Bounded(kind, effects.Of(kind)), "a value out of its range");
    const ChannelTemplate again = Parse_Template(Template_Text(read), true);
    Require(again.TemplatePan == read.TemplatePan && again.TemplatePatch1 == read.TemplatePatch1 &&
                again.StyleInts == read.StyleInts && again.TemplateStyle == read.TemplateStyle,
            "what was written is read otherwise");
    Require(Template_Text(again) == Template_Text(Parse_Template(Template_Text(again), false)),
            "the second writing differs");
    (void)Pan_From_Text(text);
    return 0;
}
