#pragma once

#include <QString>

#include <string>
#include <vector>

namespace tonvex {

/// A text of the core in the user's language. The core knows no translation, so its texts are source texts,
/// looked up where they are shown: whole, or by a pattern of the table with names and numbers in the places
/// %1 to %3, which are looked up themselves (the step within "Undo %1"). A text that is in no catalogue, a
/// name for example, comes back as it is. Interface thread.
QString Core_Words(const std::string& text);

/// Every text and pattern that a catalogue can translate, context "Core". A text of the core that the user
/// sees stands here; tests/gui/translation_test.cpp looks for those that do not.
const std::vector<const char*>& Core_Word_Sources();

} // namespace tonvex
