#include "platform/midi_port_table.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

using namespace tonvex;

namespace {

std::map<std::string, std::int32_t> Ids(const Midi_Port_Table& table) {
    std::map<std::string, std::int32_t> ids;
    for (const Midi_Port& port : table.Ports())
        ids[port.name] = port.id;
    return ids;
}

} // namespace

TEST(MidiPortTable, NamesAreTrimmedOfBlanksAndNumbers) {
    const struct {
        const char* system;
        const char* shown;
    } rows[] = {{"Keystation:Keystation MIDI 1 20:0", "Keystation:Keystation MIDI 1"},
                {"  Piano  ", "Piano"},
                {"system:midi_capture_1", "system:midi_capture_1"},
                {"Synth 2", "Synth 2"},
                {"Clock 12:", "Clock 12:"},
                {"20:0", "20:0"},
                {"A 1:2:3", "A 1:2:3"},
                {"", ""}};
    for (const auto& row : rows)
        EXPECT_EQ(Midi_Port_Table::Shown_Name(row.system), row.shown);
}

TEST(MidiPortTable, APortKeepsItsIdWhileItStaysAndFindsItAgain) {
    Midi_Port_Table table;
    EXPECT_TRUE(table.Update({{1, "A 20:0"}, {1, "B 24:0"}}));
    EXPECT_FALSE(table.Update({{1, "B 24:0"}, {1, "A 20:0"}})); // another order is no change
    const auto before = Ids(table);
    ASSERT_EQ(before.size(), 2U);
    EXPECT_NE(before.at("A"), before.at("B"));
    EXPECT_TRUE(table.Update({{1, "B 24:0"}}));
    EXPECT_EQ(table.Find(before.at("A")), nullptr);
    EXPECT_TRUE(table.Update({{1, "B 24:0"}, {1, "A 28:0"}})); // plugged in anew, with other numbers
    EXPECT_EQ(Ids(table), before);
    EXPECT_EQ(table.Find(before.at("A"))->found.systemName, "A 28:0");

    Midi_Port_Table nextRun; // found in another order
    nextRun.Update({{1, "Z"}, {1, "A 20:0"}, {2, "B 24:0"}});
    EXPECT_EQ(Ids(nextRun).at("A"), before.at("A"));
}

TEST(MidiPortTable, PortsOfOneNameAreToldApart) {
    Midi_Port_Table table;
    table.Update({{1, "Keys 20:0"}, {1, "Keys 24:0"}, {2, "Keys"}});
    const auto before = Ids(table);
    ASSERT_EQ(before.size(), 3U);
    EXPECT_EQ(before.at("Keys (2)"), before.at("Keys") + 1);
    EXPECT_EQ(before.at("Keys (3)"), before.at("Keys") + 2);
    for (const auto& [name, id] : before)
        EXPECT_GE(id, 0) << name;
    table.Update({{1, "Keys 24:0"}, {2, "Keys"}}); // the first goes: the others stay what they are
    EXPECT_EQ(Ids(table).at("Keys (2)"), before.at("Keys (2)"));
    table.Update({{1, "Keys 24:0"}, {2, "Keys"}, {1, "Keys 30:0"}});
    EXPECT_EQ(Ids(table), before);
}
