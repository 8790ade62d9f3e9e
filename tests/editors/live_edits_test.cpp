// What an events editor edits while the song plays, under both engines: from the gesture to the output.

#include "editors/clipboard_class.h"
#include "editors/event_edits.h"
#include "support/test_session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <sstream>

namespace tonvex {
namespace {

/// 60 beats a minute, so a beat is 1000 ms. C5 from 0.0 to 2.0, E5 from 3.0 to 4.0; the edit comes at 1 s.
class Live_Bed final : public Output_Observer {
public:
    explicit Live_Bed(bool threadEngine) {
        session.project.ProjectTempo = 60;
        session.options.Global_UseThreadEngine = threadEngine;
        edits.Channel = FIRST_ID;
        c5 = store.AddNewEvent(0.0, NoteData{72, 100, 2.0});
        e5 = store.AddNewEvent(3.0, NoteData{76, 100, 1.0});
        session.output->Set_Observer(this);
    }
    ~Live_Bed() override { session.output->Set_Observer(nullptr); }

    void On_Output(Sound_Op op, int slot, int a, int b) override {
        if (op != Sound_Op::NoteOn && op != Sound_Op::NoteOff)
            return;
        const bool on = op == Sound_Op::NoteOn;
        const std::int64_t ms = test.counter.Now_Ms() - startMs;
        sent.emplace_back(ms, (on ? "+" : "-") + std::to_string(a) + (on ? "/" + std::to_string(b) : ""));
        sounding[{slot, a}] += on ? 1 : -1;
    }
    std::string Play(const std::function<void()>& edit) {
        bool done = false;
        test.loop.betweenRounds = [&](std::int64_t nowMs) {
            if (done || nowMs - startMs < 1000)
                return;
            done = true;
            edit();
        };
        startMs = test.counter.Now_Ms();
        session.player->Transport_Play(0.0, true, 1.0F);
        std::stable_sort(sent.begin(), sent.end());
        std::ostringstream text;
        for (const auto& [ms, what] : sent)
            text << (text.tellp() > 0 ? " " : "") << ms << what;
        return text.str();
    }
    bool Silent() const {
        return std::all_of(sounding.begin(), sounding.end(),
                           [](const auto& note) { return note.second == 0; });
    }

    Test_Session test;
    Session& session = test.Load();
    ChannelClass& store = session.channels->Store(0);
    Event_Edits edits{{*session.hub, session.events, *session.channels, test.dialogs}, this};
    std::int32_t c5 = 0;
    std::int32_t e5 = 0;
    std::int64_t startMs = 0;
    std::vector<std::pair<std::int64_t, std::string>> sent;
    std::map<std::pair<int, int>, int> sounding;
};

struct Live_Row {
    const char* name;
    std::function<void(Live_Bed&)> edit;
    const char* sound;
};

TEST(Live_Edits, Are_Heard_In_The_Same_Run) {
    // Volume 80 of the channel takes velocity 100 to 80. The first round comes a millisecond after the start.
    const Live_Row rows[] = {
        {"none", [](Live_Bed&) {}, "1+72/80 2000-72 3000+76/80 4000-76"},
        {"move in time", [](Live_Bed& bed) { (void)bed.edits.Move_Beats({bed.e5}, -1.0); },
         "1+72/80 1000-72 2000+76/80 3000-76"},
        {"move in pitch", [](Live_Bed& bed) { (void)bed.edits.Move_Rows({bed.e5}, 2); },
         "1+72/80 2000-72 3000+74/80 4000-74"},
        {"move in pitch of what sounds", [](Live_Bed& bed) { (void)bed.edits.Move_Rows({bed.c5}, 2); },
         "1+72/80 1000-72 3000+76/80 4000-76"},
        {"stretch what sounds", [](Live_Bed& bed) { bed.edits.Resize({bed.c5}, 0.5); },
         "1+72/80 2500-72 3000+76/80 4000-76"},
        {"delete what sounds", [](Live_Bed& bed) { bed.edits.Delete({bed.c5}); },
         "1+72/80 1000-72 3000+76/80 4000-76"},
        {"draw",
         [](Live_Bed& bed) {
             (void)bed.edits.Add({{2.5, NoteData{60, 100, 1.0}}}, "Add note");
         },
         "1+72/80 1000-72 2500+60/80 3000+76/80 3500-60 4000-76"},
        {"copy", [](Live_Bed& bed) { (void)bed.edits.Copy_Events({bed.e5}, 1.5, 0); },
         "1+72/80 1000-72 3000+76/80 4000-76 4500+76/80 5500-76"},
        {"volume", [](Live_Bed& bed) { bed.edits.Set_Volume({bed.e5}, 50); },
         "1+72/80 2000-72 3000+76/40 4000-76"},
        {"align",
         [](Live_Bed& bed) {
             (void)bed.edits.Set_Times({bed.e5}, 1.6, 0.5, false);
             bed.edits.Align({bed.e5}, 1);
         },
         "1+72/80 1000-72 2000+76/80 2500-76"},
        {"properties",
         [](Live_Bed& bed) {
             bed.edits.Set_Properties(bed.e5, NoteData{48, 125, 9.0}, "Change note properties");
         },
         "1+72/80 2000-72 3000+48/100 4000-48"},
        {"paste",
         [](Live_Bed& bed) {
             ClipboardClass clipboard;
             clipboard.Copy(bed.store, {bed.c5, bed.e5});
             (void)bed.edits.Add(clipboard.Placed_At(5.0), "Paste events");
         },
         "1+72/80 1000-72 3000+76/80 4000-76 5000+72/80 7000-72 8000+76/80 9000-76"},
    };
    for (const bool threadEngine : {false, true})
        for (const Live_Row& row : rows) {
            SCOPED_TRACE(std::string(row.name) + (threadEngine ? ", thread engine" : ", polling"));
            Live_Bed bed(threadEngine);
            EXPECT_EQ(bed.Play([&] { row.edit(bed); }), row.sound);
            EXPECT_TRUE(bed.Silent());
        }
}

} // namespace
} // namespace tonvex
