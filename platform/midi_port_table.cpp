#include "platform/midi_port_table.h"

#include "base/text_codec.h"

#include <algorithm>

namespace tonvex {

namespace {

constexpr std::uint32_t ID_MASK = 0x3FFFFFFF; ///< keeps IDs positive with room to count up

/// FNV-1a, 32 bits.
std::int32_t Id_From_Name(const std::string& name) {
    std::uint32_t hash = 2166136261U;
    for (const char letter : name) {
        hash ^= static_cast<std::uint8_t>(letter);
        hash *= 16777619U;
    }
    return static_cast<std::int32_t>(hash & ID_MASK);
}

} // namespace

std::string Midi_Port_Table::Shown_Name(const std::string& systemName) {
    std::string name = Trim(systemName);
    const std::size_t blank = name.rfind(' ');
    if (blank == std::string::npos)
        return name;
    const std::string tail = name.substr(blank + 1);
    const bool numbers = tail.find_first_not_of("0123456789:") == std::string::npos &&
                         std::count(tail.begin(), tail.end(), ':') == 1 && tail.front() != ':' &&
                         tail.back() != ':';
    return numbers ? Trim(name.substr(0, blank)) : name;
}

bool Midi_Port_Table::Id_Taken(std::int32_t id) const {
    return Find(id) != nullptr;
}

bool Midi_Port_Table::Name_Taken(const std::string& name) const {
    return std::any_of(rows.begin(), rows.end(), [&](const Row& row) { return row.port.name == name; });
}

bool Midi_Port_Table::Update(const std::vector<Found>& now) {
    const auto gone = [&](const Row& row) {
        return std::find(now.begin(), now.end(), row.found) == now.end();
    };
    const std::size_t before = rows.size();
    std::erase_if(rows, gone);
    bool changed = rows.size() != before;
    for (const Found& found : now) {
        if (std::any_of(rows.begin(), rows.end(), [&](const Row& row) { return row.found == found; }))
            continue;
        const std::string name = Shown_Name(found.systemName);
        Row row{found, {name, Id_From_Name(name)}};
        while (Id_Taken(row.port.id))
            ++row.port.id;
        for (int number = 2; Name_Taken(row.port.name); ++number)
            row.port.name = name + " (" + std::to_string(number) + ")";
        rows.push_back(std::move(row));
        changed = true;
    }
    return changed;
}

std::vector<Midi_Port> Midi_Port_Table::Ports() const {
    std::vector<Midi_Port> ports;
    ports.reserve(rows.size());
    for (const Row& row : rows)
        ports.push_back(row.port);
    return ports;
}

const Midi_Port_Table::Row* Midi_Port_Table::Find(std::int32_t id) const {
    const auto row = std::find_if(rows.begin(), rows.end(), [id](const Row& r) { return r.port.id == id; });
    return row == rows.end() ? nullptr : &*row;
}

} // namespace tonvex
