#pragma once

#include <string>

namespace tonvex {

class Session;

inline constexpr int MAJOR = 0;
inline constexpr int MINOR = 1;

/// The song's key as one step of undo; the keyboard's tuning moves with it when the settings say so.
/// key 0 to 11 (others are folded), mode MAJOR or MINOR. False when it is the song's key already, or when
/// that is fixed. Interface thread.
bool Update_Song_Key(Session& session, int key, int mode);

/// Style events stand in the song, whose chords would not follow another key.
bool Song_Key_Is_Fixed(const Session& session);

/// "C Major", "A Minor", in the note names in force.
std::string Song_Key_Name(const Session& session, int key, int mode);

} // namespace tonvex
