#include "input/piano_selection.h"

#include <algorithm>

namespace tonvex {

namespace {

constexpr int OCTAVE = 12;

bool In_Reach(int place) {
    return place >= 0 && place < Piano_Selection::PLACES;
}

} // namespace

void Piano_Selection::SetMode(Mode newMode) {
    mode = newMode;
    if (mode == Mode::Chord)
        return;
    const auto places = Places();
    for (std::size_t i = 1; i < places.size(); ++i)
        marks[static_cast<std::size_t>(places[i])] = false;
}

std::vector<int> Piano_Selection::Places() const {
    std::vector<int> places;
    for (int place = 0; place < PLACES; ++place)
        if (marks[static_cast<std::size_t>(place)])
            places.push_back(place);
    return places;
}

void Piano_Selection::Set_Variable(bool on, int octaveStart) {
    if (on == variable)
        return;
    const auto before = Places();
    marks.fill(false);
    variable = on;
    for (const int place : before) {
        const int now = on ? place - octaveStart : place + octaveStart;
        if (In_Reach(now))
            marks[static_cast<std::size_t>(now)] = true;
    }
    Set_First_Place(on ? 0 : octaveStart);
    Show_Marks();
}

void Piano_Selection::Set_Notes(const std::vector<int>& stored) {
    marks.fill(false);
    variable = std::any_of(stored.begin(), stored.end(), [](int note) { return note >= RELATIVE; });
    for (const int note : stored) {
        const int place = variable ? note - RELATIVE : note;
        if (!In_Reach(place))
            continue;
        marks[static_cast<std::size_t>(place)] = true;
        if (mode == Mode::Note)
            break;
    }
    Set_First_Place(variable ? 0 : 60);
    Show_Marks();
}

/// Another octave only when the lowest mark is not in sight.
void Piano_Selection::Show_Marks() {
    const auto places = Places();
    if (!places.empty() && (places.front() < first || places.back() >= first + SLOTS))
        Set_First_Place(places.front());
}

std::vector<int> Piano_Selection::Notes() const {
    auto notes = Places();
    if (variable)
        for (int& note : notes)
            note += RELATIVE;
    return notes;
}

void Piano_Selection::Set_First_Place(int place) {
    first = std::clamp(place / OCTAVE * OCTAVE, 0, LAST_FIRST_PLACE);
}

void Piano_Selection::Toggle(int slot) {
    if (slot < 0 || slot >= SLOTS)
        return;
    bool& mark = marks[static_cast<std::size_t>(first) + static_cast<std::size_t>(slot)];
    const bool wanted = !mark;
    if (mode == Mode::Note)
        marks.fill(false);
    mark = wanted;
}

bool Piano_Selection::Is_Marked(int slot) const {
    return slot >= 0 && slot < SLOTS &&
           marks[static_cast<std::size_t>(first) + static_cast<std::size_t>(slot)];
}

std::string Piano_Selection::Check() const {
    const std::size_t count = Places().size();
    if (mode == Mode::Note)
        return count == 0 ? "You must select a note" : "";
    if (count < 2)
        return "You must select two notes";
    return count > MOST_NOTES ? "Chord must have less than 7 notes" : "";
}

} // namespace tonvex
