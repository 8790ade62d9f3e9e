#pragma once

#include "input/keyboard_layout_file.h"
#include "platform/user_dialogs.h"
#include "song/event_data.h"
#include "song/notes_stuff.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace tonvex {

/// What each key does: the four key tables, their files, the tuning. Interface thread.
/// Files are always untransposed; the tables in memory carry AppliedTuning. Loading bakes KeyboardTuning in,
/// saving takes it out of what is written and leaves the tables as they are.
/// Every Target is a row of its table on a key that is enabled: what a file enables with another is disabled.
/// Files lie in <config>/keyboard/<name>.dat. Failures are told in a box and change nothing.
class KeyboardLayout {
public:
    static constexpr int KEYS = 1001;
    static constexpr int STATUS_SLOTS = 11; ///< snapshots 0 to 10
    static constexpr int FIRST_MIDI_KEY = 256;
    static constexpr int LAST_MIDI_KEY = 384;

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
    /// Names of the layouts in the folder, sorted.
    std::vector<std::string> Layout_Names() const;
    /// Asks about unsaved changes, then reads name, else "default", else "Tonvex default". A name that is
    /// empty or holds a slash does nothing. Changes that could not be saved, and a broken file, leave the
    /// layout in force, name and all. currentTempo is in beats per minute (old files hold lengths in
    /// milliseconds).
    void LoadKeyboardSettings(const std::string& name, double currentTempo);
    /// Saves under name, asking before it overwrites; false after a message or a no.
    bool SaveKeyboardSettings(const std::string& name);
    /// Asks, then deletes the layout's file; false after a no or a message.
    bool Delete_Layout(const std::string& name);
    /// Reads one file over rows 0 to 255, untransposed; AppliedTuning is then 0. A file of a version that
    /// holds nothing keeps the tables. False, with a box, when the file is broken or missing. The special
    /// keys are set in every case.
    bool Read_File_Into_Tables(const std::filesystem::path& file, double currentTempo);
    /// The same of a file's bytes.
    bool Read_Bytes_Into_Tables(std::span<const std::uint8_t> bytes, double currentTempo);
    /// The tables as they stand now, tuning and all. Without quiet an existing file is asked about.
    bool Write_Tables(const std::filesystem::path& file, bool quiet);
    /// Function keys and MIDI keys, which no file can change.
    void LoadSpecialKeys();
    /// Moves what the enabled keys 0 to 255 play by shift semitones, each row once, and spells the chords'
    /// names anew; AppliedTuning is then shift. A note
    /// wraps round through its byte. A chord that is fingered on the guitar is fingered anew, unless it has
    /// no chord type.
    void Transpose(int shift);
    void KeyboardTuning_Changed();
    /// Snapshot of rows 0 to 255 in the temp folder, slot 0 to 10; false after a message or for another slot.
    bool StoreKeyboardStatus(int slot);
    bool LoadKeyboardStatus(int slot, double currentTempo);
    void LoadChordsInKey(int songKey, int songMode);
    /// Right click menu: 0 note, 1 chord, 2 style key, 4 disabled; others do nothing. The first three enable
    /// the key. Keys that LoadSpecialKeys sets stay as they are.
    void Set_Key_Function(int key, int menuCode);
    /// Give a computer key a note or a chord and enable it; keys that LoadSpecialKeys sets stay as they are.
    void Set_Key_Note(int key, const NoteData& note);
    void Set_Key_QChord(int key, const QChordData& chord);
    /// MIDI note that a stored note of a key sounds now; above 127 when it lies out of range.
    int Sounding_Note(int storedNote) const noexcept;

    /// A key that the program keeps for itself: Escape, F1 to F12.
    static bool Is_Special_Key(int key) noexcept;
    /// A computer key that the user may set.
    static bool Is_Free_Key(int key) noexcept {
        return key >= 0 && key < FIRST_MIDI_KEY && !Is_Special_Key(key);
    }

private:
    enum class Read_Result { Replaced, Kept, Failed };

    std::filesystem::path Layout_File(const std::string& name) const;
    Key_Tables Copy_Tables() const;
    Key_Tables Untuned_Tables() const;
    void Put_Tables(const Key_Tables& tables);
    Read_Result Read_Tables(std::span<const std::uint8_t> bytes, double currentTempo);
    Read_Result Read_Tables_Of(const std::filesystem::path& file, double currentTempo);
    bool Write_File(const std::filesystem::path& file, const Key_Tables& tables, bool quiet);
    bool Save_Untuned(const std::filesystem::path& file, bool quiet);
    void Tune_After(Read_Result result);

    const NotesStuff& notes;
    User_Dialogs& dialogs;
    std::filesystem::path configFolder;
    std::filesystem::path tempFolder;
    Chord_Name_Fields chordNameFields{};
};

} // namespace tonvex
