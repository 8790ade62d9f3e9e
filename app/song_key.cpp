#include "app/song_key.h"

#include "app/session.h"

#include <algorithm>

namespace tonvex {

namespace {

constexpr int TO_RELATIVE_MAJOR = 3;

int Major_Of(int key, int mode) {
    return mode == MINOR ? key + TO_RELATIVE_MAJOR : key;
}

} // namespace

bool Song_Key_Is_Fixed(const Session& session) {
    const auto& events = session.creator.MC_Events;
    return std::any_of(events.begin(), events.end(),
                       [](const MCBarEvent& event) { return Is_On(event.InUse); });
}

bool Update_Song_Key(Session& session, int key, int mode) {
    MusicCreator_Module& creator = session.creator;
    key = Wrap12(key);
    if ((key == creator.SongKey && mode == creator.SongMode) || Song_Key_Is_Fixed(session))
        return false;
    const int shift = Major_Of(key, mode) - Major_Of(creator.SongKey, creator.SongMode);
    {
        const MsgManager::Batch step(*session.hub, MsgManager::Batch::Update_At_End, "Change song key");
        session.undo->Undo_MC("Change song key");
        creator.SongKey = key;
        creator.SongMode = mode;
    }
    session.project.Modified = true;
    if (session.settings.Keyboard_Match_SongKey) {
        session.layout->KeyboardTuning = Wrap12(session.layout->KeyboardTuning + shift);
        session.layout->KeyboardTuning_Changed();
    }
    session.hub->Message(nullptr, MSG_GENERAL_UPDATE);
    return true;
}

std::string Song_Key_Name(const Session& session, int key, int mode) {
    return session.notes.RootName(Wrap12(key)) + (mode == MINOR ? " Minor" : " Major");
}

} // namespace tonvex
