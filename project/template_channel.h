#pragma once

#include "engine/gcm_midi.h"
#include "project/channel_template.h"
#include "project/undo_module.h"
#include "song/change_hub.h"
#include "song/global_channels_manager.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tonvex {

/// Row of the patch table, on the drum slot of the kits, that has a program and a bank. A bank that is not on
/// offer is bank 0, whose melodic programs are always there; a kit that is not there is the first.
std::int16_t Patch_Row_Of(const GlobalChannelsManager& channels, int slot, int program, int bank);

/// What a new channel is made of: a template, and what the user changed of it.
struct Template_Channel {
    ChannelTemplate preset;
    std::string name;
    std::uint8_t volume = 80; ///< 0 to 127
    std::uint8_t pan = 64;    ///< 0 to 127
};

/// A template that begins a channel as this one is, under those keys. On the drum slot it stays there; else
/// the new channel takes a slot of its own.
ChannelTemplate Template_Of(const GlobalChannel& channel, const std::string& layoutName);

/// Adds the channel through the hub, then gives it and its slot what the template says; one undo step takes
/// it all back. The ChannelID; nothing when the hub refused. Interface thread.
std::optional<std::int32_t> Add_Template_Channel(Change_Hub& hub, UndoModule& undo,
                                                 GlobalChannelsManager& channels, GCM_Midi& gcm,
                                                 const Template_Channel& wanted);

} // namespace tonvex
