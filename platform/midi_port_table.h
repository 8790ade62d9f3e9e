#pragma once

#include "platform/midi_ports.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tonvex {

/// Gives ports their IDs and shown names. An ID comes from the name, so that a stored choice finds its
/// device again after a restart or when it was plugged in anew; among equal names the order decides, and a
/// port keeps its ID while it stays. Interface thread.
class Midi_Port_Table {
public:
    struct Found {
        int api = 0;            ///< the caller's
        std::string systemName; ///< as the system spells it
        bool operator==(const Found&) const = default;
    };
    struct Row {
        Found found;
        Midi_Port port;
    };

    /// Takes the ports there are now. True when the list differs from the last.
    bool Update(const std::vector<Found>& now);
    const std::vector<Row>& Rows() const noexcept { return rows; }
    std::vector<Midi_Port> Ports() const;
    /// Null when no port has the ID.
    const Row* Find(std::int32_t id) const;

    /// Without blanks at its ends and without the numbers that ALSA puts behind (" 20:0"), which change
    /// each time a device is plugged in.
    static std::string Shown_Name(const std::string& systemName);

private:
    bool Id_Taken(std::int32_t id) const;
    bool Name_Taken(const std::string& name) const;

    std::vector<Row> rows;
};

} // namespace tonvex
