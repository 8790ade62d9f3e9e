#pragma once

#include <array>
#include <cstdint>
#include <deque>

namespace tonvex {

/// Which keys are down, by scan code of the layout files (set 1 numbering: Escape 1, Z 44, F11 87).
struct Key_State {
    std::array<std::uint8_t, 256> down{};        ///< nonzero: down
    std::array<std::int64_t, 256> changedAtNs{}; ///< arrival of the last edge, Millisecond_Counter time
};

/// The computer keyboard. Interface thread.
class Key_State_Door {
public:
    virtual ~Key_State_Door() = default;
    /// Takes the keyboard's edges from now on; false when there is no source of key events.
    virtual bool Open() = 0;
    virtual void Close() = 0;
    /// A failed try is harmless and may be repeated.
    virtual bool Acquire() = 0;
    virtual void Release() = 0;
    /// Brings state up to date by at most one queued edge, so that a short press is never lost.
    /// False when the keyboard was lost.
    virtual bool Read(Key_State& state) = 0;
};

/// Key edges from a script: an edge shows once the counter has reached its moment.
class Scripted_Key_State final : public Key_State_Door {
public:
    struct Edge {
        std::int64_t atNs;
        std::uint8_t scanCode;
        bool down;
    };
    /// Edges in order of time.
    std::deque<Edge> edges;
    /// The present moment; the owner keeps it up to date.
    const class Millisecond_Counter* counter = nullptr;

    bool Open() override { return true; }
    void Close() override {}
    bool Acquire() override { return true; }
    void Release() override {}
    bool Read(Key_State& state) override;
};

} // namespace tonvex
