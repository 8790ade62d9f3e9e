#include "engine/cue_engine.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>
#include <memory>
#include <sys/prctl.h>
#include <system_error>
#include <utility>

namespace tonvex {

namespace {

constexpr std::int64_t NS_PER_S = 1'000'000'000;
constexpr std::int64_t NS_PER_MS = 1'000'000;

} // namespace

CueEngine::CueEngine(const Millisecond_Counter& machineClock, Cue_Output& output, Cue_Drive whoDrives)
    : counter(machineClock), drive(whoDrives),
      player(output, machineClock, whoDrives == Cue_Drive::Threaded ? MARGIN_NS : 0) {
    sem_init(&wake, 0, 0);
}

CueEngine::~CueEngine() {
    FreeDLL();
    sem_destroy(&wake);
}

bool CueEngine::InitDLL() {
    if (running)
        return true;
    if (drive == Cue_Drive::Threaded) {
        quit.store(false, std::memory_order_relaxed);
        try {
            thread = std::thread([this] { Run(); });
        } catch (const std::system_error&) {
            return false;
        }
    }
    running = true;
    return true;
}

void CueEngine::FreeDLL() {
    if (!running)
        return;
    Player_Stop();
    Post([](Cue_Player& held) { held.Set_List_Count(0); });
    running = false;
    listCount = 0;
    clockSet = false;
    if (drive == Cue_Drive::Threaded) {
        quit.store(true, std::memory_order_release);
        sem_post(&wake);
        thread.join();
    }
    Collect_Done();
}

void CueEngine::Collect_Done() {
    Command* command = nullptr;
    while (done.pop(command))
        delete command;
}

void CueEngine::Post(Command command) {
    if (!running)
        return;
    if (drive == Cue_Drive::Stepped) {
        command(player);
        return;
    }
    Collect_Done();
    auto handedOver = std::make_unique<Command>(std::move(command));
    while (!commands.push(handedOver.get())) {
        // The thread has a thousand commands to carry out first; waiting here holds up nothing that sounds.
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        Collect_Done();
    }
    static_cast<void>(handedOver.release()); // comes back by the other queue
    ++posted;
    sem_post(&wake);
}

void CueEngine::Init_SetOutput(bool UseSynth, std::int64_t blockNs) {
    const std::int64_t leadNs = UseSynth ? std::max(LEAD_NS, 2 * blockNs) : 0;
    Post([UseSynth, leadNs](Cue_Player& held) { held.Set_Output(UseSynth, leadNs); });
}

bool CueEngine::Init_Buffers(std::int32_t LastList, std::int32_t MaxRows) {
    if (!running || LastList < -1 || LastList >= MAX_LISTS || MaxRows < 0)
        return false;
    listCount = LastList + 1;
    Post([count = static_cast<std::size_t>(listCount)](Cue_Player& held) { held.Set_List_Count(count); });
    return true;
}

void CueEngine::AddEvents(std::int32_t List, const CueRow* Rows, std::int32_t Count) {
    if (List < 0 || List >= listCount || Count < 0)
        return;
    Post([index = static_cast<std::size_t>(List),
          list = Cue_List::Make({Rows, static_cast<std::size_t>(Count)})](Cue_Player& held) {
        held.Set_List(index, list);
    });
}

void CueEngine::Channel_UpdateModded(std::int32_t List, const CueRow* Rows, std::int32_t Count,
                                     bool keepSounding) {
    if (List < 0 || List >= listCount || Count < 0)
        return;
    // The old list comes out into the command and is freed with it, on this thread.
    Post([index = static_cast<std::size_t>(List),
          list = Cue_List::Make({Rows, static_cast<std::size_t>(Count)}),
          keepSounding](Cue_Player& held) mutable { held.Replace_List(index, list, keepSounding); });
}

void CueEngine::Channel_SetMute(std::int32_t Row, bool Mute) {
    Post([Row, Mute](Cue_Player& held) { held.Set_Mute(Row, Mute); });
}

void CueEngine::Channel_SetVolFactor(std::int32_t Row, float Factor) {
    const float usable = std::isfinite(Factor) ? std::max(Factor, 0.0F) : 0.0F;
    Post([Row, usable](Cue_Player& held) { held.Set_Vol_Factor(Row, usable); });
}

void CueEngine::Player_SetRecChannelI(std::int32_t Row, std::int32_t Slot) {
    const int slot = Row < 0 ? -1 : Slot;
    Post([slot](Cue_Player& held) { held.Set_Performer_Slot(slot); });
}

void CueEngine::Player_CopyRecActiveNotes(const Live_Notes& Notes) {
    player.Tell_Live_Notes(Notes);
    Post([Notes](Cue_Player& held) { held.Set_Live_Notes(Notes); });
}

bool CueEngine::Player_TakesOver(int Slot, int Note) {
    if (!player.Holds(Slot, Note))
        return false;
    Post([Slot, Note](Cue_Player& held) { held.Take_Over(Slot, Note); });
    return true;
}

void CueEngine::Player_SetPos(double Time) {
    Post([Time](Cue_Player& held) { held.Set_Position(Time); });
}

void CueEngine::clock_SetPars(float Speed, std::int32_t Tempo, std::int64_t StartTick, std::int64_t SegmentMs,
                              double SegmentBeat, std::span<const Tempo_Segment> map) {
    if (!running)
        return;
    clockSet = true;
    clockSpeed = std::isfinite(Speed) && Speed > 0.0F ? static_cast<double>(Speed) : 1.0;
    clockStartTick = StartTick;
    clockSegments.assign(map.begin(), map.end());
    if (map.empty())
        clockSegments.push_back({SegmentBeat, SegmentMs, Tempo});
    Post([speed = static_cast<float>(clockSpeed), StartTick, segments = clockSegments](
             Cue_Player& held) mutable { held.Set_Clock(speed, StartTick, std::move(segments)); });
}

std::int32_t CueEngine::clock_CheckValid(double Time) const {
    if (!clockSet)
        return 1;
    return Moment_In(clockSegments, clockStartTick, clockSpeed, Time) > counter.Now_Ns() + NS_PER_MS ? 1 : 0;
}

void CueEngine::Player_Start() {
    Post([](Cue_Player& held) { held.Start(); });
}

void CueEngine::Player_Stop() {
    Post([](Cue_Player& held) { held.Stop(); });
}

bool CueEngine::Player_IsPaused() const {
    if (drive == Cue_Drive::Stepped)
        return !player.Is_Playing();
    return !running ||
           (carriedOut.load(std::memory_order_acquire) == posted && !playing.load(std::memory_order_relaxed));
}

bool CueEngine::At_End() const {
    if (drive == Cue_Drive::Stepped)
        return player.At_End();
    return !running ||
           (carriedOut.load(std::memory_order_acquire) == posted && atEnd.load(std::memory_order_relaxed));
}

void CueEngine::Step() {
    if (running && drive == Cue_Drive::Stepped)
        player.Advance();
}

void CueEngine::Carry_Out_Commands() noexcept {
    Command* command = nullptr;
    std::uint64_t count = 0;
    while (commands.pop(command)) {
        (*command)(player);
        ++count;
        if (!done.push(command))
            delete command; // nobody has collected for long
    }
    if (count == 0)
        return;
    playing.store(player.Is_Playing(), std::memory_order_relaxed);
    atEnd.store(player.At_End(), std::memory_order_relaxed);
    carriedOut.fetch_add(count, std::memory_order_release);
}

void CueEngine::Run() noexcept {
    // The kernel may otherwise put every wake-up off by 50 microseconds to save energy.
    prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
    while (!quit.load(std::memory_order_acquire)) {
        Carry_Out_Commands();
        const std::int64_t wakeNs = player.Advance();
        atEnd.store(player.At_End(), std::memory_order_relaxed);
        Sleep_Until(wakeNs);
    }
    Carry_Out_Commands();
}

void CueEngine::Sleep_Until(std::int64_t ns) noexcept {
    if (ns == Cue_Player::NEVER) {
        sem_wait(&wake);
        return;
    }
    const timespec until{ns / NS_PER_S, ns % NS_PER_S};
    sem_clockwait(&wake, CLOCK_MONOTONIC, &until);
}

} // namespace tonvex
