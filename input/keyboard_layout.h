#pragma once

#include "platform/user_dialogs.h"
#include "song/event_data.h"
#include "song/notes_stuff.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tonvex {

enum Key_Kind : std::uint8_t { KEY_NOTE = 0, KEY_QCHORD = 1, KEY_MC = 5, KEY_RESERVED = 255 };

struct KeyMapEntry {
    std::int16_t Enabled = 0; ///< -1 the key does something
    std::int16_t Target = 0;  ///< row in the table of its kind
    std::uint8_t Kind = KEY_NOTE;
    bool operator==(const KeyMapEntry&) const = default;
};

/// What each key does: the four key tables, their files, the tuning. Interface thread.
/// Files are always untransposed; the tables in memory carry AppliedTuning.
class KeyboardLayout {
public:
    static constexpr int KEYS = 1001;

    KeyboardLayout(const NotesStuff& notes, User_Dialogs& dialogs);

    std::array<KeyMapEntry, KEYS> KeyMap;
    std::array<NoteData, KEYS> KeyNoteTable;
    std::array<QChordData, KEYS> KeyQChordTable;
    std::array<MCEventData, KEYS> KeyMCTable;
    int KeyboardTuning = 0;       ///< 0 to 11
    int AppliedTuning = 0;        ///< what is baked into the tables now
    std::string KeyboardFileName; ///< without folder and extension
    bool KeyboardModified = false;
    int NotesOctave = 3;                                      ///< 0 to 5
    int QChordsOctave = 3;                                    ///< 0 to 5
    std::array<std::array<std::uint8_t, 2>, 7> ChordsInKey{}; ///< root, minor flag

    /// config is the folder that holds keyboard/; temp takes the status snapshots.
    void Set_Folders(const std::filesystem::path& config, const std::filesystem::path& temp);
    std::vector<std::string> Layout_Names() const;
    void LoadKeyboardSettings(const std::string& name, double currentTempo);
    /// Saves under a new name with the tuning taken out; false after a message or a no.
    bool SaveKeyboardSettings(const std::string& name);
    /// Reads one file over the tables (rows 0 to 255). Boxes as the file formats' rules say.
    bool Read_File_Into_Tables(const std::filesystem::path& file, double currentTempo);
    bool Write_Tables(const std::filesystem::path& file, bool quiet);
    void LoadSpecialKeys();
    void Transpose(int shift);
    void KeyboardTuning_Changed();
    void StoreKeyboardStatus(int slot);
    bool LoadKeyboardStatus(int slot, double currentTempo);
    void LoadChordsInKey(int songKey, int songMode);
    /// Right click menu: 0 note, 1 chord, 2 style key, 4 disabled.
    void Set_Key_Function(int key, int menuCode);
    /// MIDI note that a stored note of a key sounds now; above 127 when it lies out of range.
    int Sounding_Note(int storedNote) const noexcept;

private:
    const NotesStuff& notes;
    User_Dialogs& dialogs;
    std::filesystem::path configFolder;
    std::filesystem::path tempFolder;
};

} // namespace tonvex
