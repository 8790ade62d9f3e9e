#include "song/vget_tick_count.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tonvex {
namespace {

struct Change {
    double beat;
    std::int16_t tempo;
};

/// A clock over a tempo map, on a counter that starts at 1000 ms.
struct Clock_Bed {
    Simulated_Counter counter;
    TempoChangeClass changes;
    Project_State project;
    VGetTickCount clock{counter, changes, project};

    explicit Clock_Bed(std::int32_t baseTempo, const std::vector<Change>& map = {}, float speed = 1.0F) {
        project.ProjectTempo = baseTempo;
        for (const Change& change : map)
            changes.AddTempoChange(change.beat, change.tempo);
        clock.Speed = speed;
        clock.UseTempoMap = true;
        counter.Advance_Ms(1000);
    }
};

std::vector<double> Positions(const TempoChangeClass& changes) {
    std::vector<double> beats;
    std::int32_t id = 0;
    double beat = 0.0;
    std::int16_t tempo = 0;
    for (int n = 0; changes.GetTempoChange(n, id, beat, tempo); ++n)
        beats.push_back(beat);
    return beats;
}

TEST(TempoChanges, StandInTimeOrderOneAPosition) {
    TempoChangeClass changes;
    changes.AddTempoChange(8.0, 100);
    changes.AddTempoChange(2.0, 90);
    changes.AddTempoChange(8.0, 55); // taken
    changes.AddTempoChange(4.0, 0);  // would divide by zero
    for (const double nowhere : {-1.0, 99000000.0, std::nan("")})
        changes.AddTempoChange(nowhere, 60);
    EXPECT_EQ(Positions(changes), (std::vector<double>{2.0, 4.0, 8.0}));
    const auto tempoOf = [&changes](std::int32_t id) {
        double beat = 0.0;
        std::int16_t tempo = 0;
        return changes.GetTempoChange_byID(id, beat, tempo) ? tempo : -1;
    };
    EXPECT_EQ(tempoOf(FIRST_ID + 2), 1);
    EXPECT_EQ(tempoOf(FIRST_ID), 100);
    EXPECT_EQ(changes.ValidTempoBeatN(8.0), 0);
    EXPECT_EQ(changes.ValidTempoBeatN(7.0), -1);

    changes.SetTempoChange(FIRST_ID, -1.0, 70);
    changes.SetTempoChange(FIRST_ID + 1, 9.0, -1);
    changes.SetTempoChange(12345, 1.0, 1);
    changes.DeleteTempoChange(12345);
    EXPECT_EQ(Positions(changes), (std::vector<double>{4.0, 8.0, 9.0}));
    EXPECT_EQ(tempoOf(FIRST_ID), 70);
    EXPECT_EQ(tempoOf(FIRST_ID + 1), 90);
    EXPECT_EQ(tempoOf(FIRST_ID + 3), -1);

    changes.DeleteTempoChange(FIRST_ID);
    EXPECT_EQ(changes.ValidTempoBeatN(8.0), -1);
    for (int i = 0; i < 30; ++i) // grows past the first 11 rows
        changes.AddTempoChange(100.0 - i, 60);
    EXPECT_EQ(Positions(changes).size(), 32U);
    changes.Clear();
    EXPECT_TRUE(Positions(changes).empty());
    changes.AddTempoChange(0.0, 61);
    EXPECT_EQ(tempoOf(FIRST_ID), 61);
}

TEST(Clock, ReadsPositions) {
    struct Case {
        const char* name;
        std::int32_t baseTempo;
        std::vector<Change> map;
        float speed;
        double start;
        std::int64_t elapsedMs;
        double first; ///< what the first call gives
        double then;  ///< the call after it
    };
    const Case cases[] = {
        {"750 ms a beat", 80, {}, 1.0F, 0.0, 750, 1.0, 1.0},
        {"half speed from beat 4: 1000 ms are 500", 120, {}, 0.5F, 4.0, 1000, 5.0, 5.0},
        {"at the change: 8 beats are 6000 ms", 80, {{8.0, 120}}, 1.0F, 0.0, 6000, 8.0, 8.0},
        {"behind it the old tempo once: 6500 / 750", 80, {{8.0, 120}}, 1.0F, 0.0, 6500, 26.0 / 3.0, 9.0},
        {"start on the change: the old tempo first", 80, {{8.0, 120}}, 1.0F, 8.0, 500, 26.0 / 3.0, 9.0},
        {"start behind it at half speed", 80, {{8.0, 120}}, 0.5F, 10.0, 1000, 11.0, 11.0},
        // 1 beat at 70 is 857.14 ms, held as 857; at 100 one more is 600. Beat 2.5 at 90 is 1790.33 ms, so
        // the clock starts 1790 ms back and stands 333 ms into the segment, 1/3 ms short.
        {"rounded segments", 70, {{1.0, 100}, {2.0, 90}}, 1.0F, 2.5, 0, 2.0 + 333.0 / (2000.0 / 3.0), 2.4995},
        {"a tempo of 0 counts as 1", 0, {}, 1.0F, 0.0, 30000, 0.5, 0.5},
        {"a speed of 0 counts as 1", 60, {}, 0.0F, 3.0, 500, 3.5, 3.5}};
    for (const Case& one : cases) {
        SCOPED_TRACE(one.name);
        Clock_Bed bed(one.baseTempo, one.map, one.speed);
        bed.clock.SetTime(one.start);
        bed.counter.Advance_Ms(one.elapsedMs);
        EXPECT_NEAR(bed.clock.GetTime(), one.first, 1e-9);
        EXPECT_NEAR(bed.clock.GetTime(), one.then, 1e-9);
    }
}

TEST(Clock, WithoutTheMapKeepsItsOwnTempo) {
    Clock_Bed bed(80, {{1.0, 200}}, 0.5F);
    bed.clock.UseTempoMap = false;
    bed.clock.Tempo = 120;
    bed.clock.SetTime(16.0);
    bed.counter.Advance_Ms(2000);
    EXPECT_DOUBLE_EQ(bed.clock.GetTime(), 18.0); // 1000 song ms
    EXPECT_DOUBLE_EQ(bed.clock.GetTime_At(2'500'000'000), 17.5);
    EXPECT_EQ(bed.clock.Moment_Of(17.5), 2'500'000'000);
}

TEST(Clock, ManualTimeRoundsHalfToEven) {
    Clock_Bed bed(80, {}, 0.5F);
    bed.clock.ManualClock = true;
    bed.clock.SetTime(0.0);
    for (const auto& [manual, ms] : {std::pair{1, 0}, {3, 2}, {5, 2}, {1501, 750}}) {
        bed.clock.ManualMS = manual;
        EXPECT_EQ(bed.clock.GetTimeMS(), ms) << manual;
    }
    EXPECT_DOUBLE_EQ(bed.clock.GetTime(), 1.0);
}

TEST(Clock, KeepsItsFormulaAfterATempoEdit) {
    Clock_Bed first(120, {}, 0.5F);
    first.counter.Advance_Ms(4000); // 5000
    first.clock.UpdateClockTempo(4.0);
    EXPECT_EQ(first.clock.Start_Tick_MS(), 1000); // 5000 - 4 / 0.5 * 500
    EXPECT_DOUBLE_EQ(first.clock.GetTime(), 4.0);
    Clock_Bed second(120, {{4.0, 60}});
    second.clock.UpdateClockTempo(6.0);
    EXPECT_EQ(second.clock.Start_Tick_MS(), 1000 - 8000); // (6 - 2000 / 1000 + 4) * 1000
}

TEST(Clock, MomentsAndPositionsAreInverse) {
    for (const float speed : {1.0F, 0.25F, 0.8F}) {
        // 1 beat at 70 is 857.14 ms (held as 857), one at 110 then 545.45 (1402.45 held as 1402), and 7/8 at
        // 95 552.6 (1954.6 held as 1955): down, down and up.
        Clock_Bed bed(70, {{1.0, 110}, {2.0, 95}, {2.875, 240}}, speed);
        bed.clock.SetTime(0.5);
        std::int64_t before = std::numeric_limits<std::int64_t>::min();
        for (double beat = 0.5; beat < 6.0; beat += 1.0 / 64) {
            const std::int64_t moment = bed.clock.Moment_Of(beat);
            EXPECT_GE(moment, before) << beat;
            EXPECT_GE(bed.clock.Moment_Of(beat + 1e-7), moment) << beat;
            EXPECT_NEAR(bed.clock.GetTime_At(moment), beat, 0.001) << "half a ms of rounding at a change";
            before = moment;
        }
        EXPECT_LE(bed.clock.GetTime_At(bed.clock.Moment_Of(2.8751) - 100'000), 2.875) << "rounded up";
        // 0.5 + 1/7 of a beat at 70 is 122.449 ms later; the start was rounded by 3/7 ms at most.
        const double ns = 122.449e6 / static_cast<double>(speed);
        EXPECT_NEAR(static_cast<double>(bed.clock.Moment_Of(0.5 + 1.0 / 7.0)) - 1e9, ns, 0.5e6);
    }
}

TEST(Clock, AMomentIsFinerThanAMillisecond) {
    Clock_Bed bed(120);
    bed.clock.SetTime(0.0);
    EXPECT_DOUBLE_EQ(bed.clock.GetTime_At(1'250'500'000), 0.501);
    EXPECT_EQ(bed.clock.Moment_Of(0.501), 1'250'500'000);
    bed.project.ProjectTempo = 60; // a live edit is seen at once
    EXPECT_EQ(bed.clock.Moment_Of(0.501), 1'501'000'000);
    bed.changes.AddTempoChange(0.25, 30);
    EXPECT_EQ(bed.clock.Moment_Of(0.5), 1'750'000'000);
}

TEST(TempoMap, ConvertsSongTimes) {
    TempoChangeClass changes;
    changes.AddTempoChange(12.0, 60);
    changes.AddTempoChange(8.0, 120);
    const Project_State project; // 80: 750 ms a beat
    const std::pair<double, double> rows[] = {{0.0, 0.0},     {750.0, 1.0},   {6000.0, 8.0}, {6500.0, 9.0},
                                              {8000.0, 12.0}, {9500.0, 13.5}, {-750.0, -1.0}};
    for (const auto& [ms, beats] : rows) {
        EXPECT_DOUBLE_EQ(MS_To_Beats(ms, changes, project), beats) << ms;
        EXPECT_DOUBLE_EQ(Beats_To_MS(beats, changes, project), ms) << beats;
    }
    EXPECT_DOUBLE_EQ(MS_To_Beats(7500.0, TempoChangeClass(), project), 10.0);
}

} // namespace
} // namespace tonvex
