#include "input/windows/key_texts.h"

#include <QCoreApplication>

namespace tonvex {

namespace {

using Face = Keyboard_View::Face;

struct Words {
    Q_DECLARE_TR_FUNCTIONS(Key_Texts)
};

/// F1 to F6 choose the octave of notes, F7 to F12 that of chords.
Keyboard_View::Key_Face Reserved_Face(const QString& sign) {
    const int function = sign.mid(1).toInt();
    if (function == 0)
        return {Face::Reserved, Words::tr("Stop"), Words::tr("%1: reserved, stops the song").arg(sign)};
    if (function <= 6)
        return {Face::Reserved, Words::tr("Notes %1").arg(function),
                Words::tr("%1: reserved, selects notes octave %2").arg(sign).arg(function)};
    return {Face::Reserved, Words::tr("Chords %1").arg(function - 6),
            Words::tr("%1: reserved, selects chords octave %2").arg(sign).arg(function - 6)};
}

} // namespace

Keyboard_View::Key_Face Face_Of_Key(const KeyboardLayout& layout, const NotesStuff& notes, int key,
                                    const QString& sign) {
    const KeyMapEntry& entry = layout.KeyMap[static_cast<std::size_t>(key)];
    if (KeyboardLayout::Is_Special_Key(key))
        return Reserved_Face(sign);
    if (entry.Enabled == 0 || entry.Target < 0 || entry.Target >= KeyboardLayout::KEYS)
        return {Face::Off, {}, Words::tr("%1: disabled").arg(sign)};
    const auto row = static_cast<std::size_t>(entry.Target);
    switch (entry.Kind) {
    case KEY_NOTE: {
        const NoteData& note = layout.KeyNoteTable[row];
        const int sounding = layout.Sounding_Note(note.Note);
        const QString now = QString::fromStdString(notes.NoteName(sounding));
        const QString text = Words::tr("%1: note %2, volume %3").arg(sign, now).arg(note.Vol);
        return {Face::Note, now, note.Note < 128 ? text : Words::tr("%1, in the active octave").arg(text)};
    }
    case KEY_QCHORD: {
        const QChordData& chord = layout.KeyQChordTable[row];
        const QString name = QString::fromStdString(chord.ChordName);
        const QString text = Words::tr("%1: chord %2, volume %3").arg(sign, name).arg(chord.ChordVol);
        return {Face::Chord, name, chord.StepMs == -1 ? text : Words::tr("%1, picked").arg(text)};
    }
    case KEY_MC: {
        const MCEventData& style = layout.KeyMCTable[row];
        const QString name =
            QString::fromStdString(notes.RootName(style.Root)) + QLatin1String(style.Minor != 0 ? "m" : "");
        return {Face::Style, name, Words::tr("%1: style chord %2").arg(sign, name)};
    }
    default:
        return {Face::Off, {}, Words::tr("%1: disabled").arg(sign)};
    }
}

} // namespace tonvex
