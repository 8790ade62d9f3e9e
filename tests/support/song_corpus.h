#pragma once

#include "app/session.h"

#include <span>

namespace tonvex {

/// Songs made by code that between them use every section of a project file.
struct Corpus_Song {
    const char* name;
    /// Into a session that stands at a new project without channels.
    void (*make)(Session& session);
};

std::span<const Corpus_Song> Song_Corpus();
/// The one among them that uses all sections at once.
void Make_Full_Song(Session& session);
/// channelCount channels of eventCount notes each.
void Make_Large_Song(Session& session, int channelCount, int eventCount);

} // namespace tonvex
