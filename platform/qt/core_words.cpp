#include "platform/qt/core_words.h"

#include <QCoreApplication>
#include <QHash>
#include <QRegularExpression>
#include <QVector>

#include <algorithm>

namespace tonvex {

namespace {

constexpr const char* CONTEXT = "Core";
constexpr int DEEPEST = 3;

// The form in which lupdate finds them. Longer patterns stand before shorter ones that would fit too.
// Long ones go over several lines. NOLINTBEGIN(bugprone-suspicious-missing-comma)
constexpr const char* SOURCES[] = {
    // steps of undo
    QT_TRANSLATE_NOOP("Core", "Undo %1"),
    QT_TRANSLATE_NOOP("Core", "Redo %1"),
    QT_TRANSLATE_NOOP("Core", "Undo"),
    QT_TRANSLATE_NOOP("Core", "Redo"),
    QT_TRANSLATE_NOOP("Core", "Add channel"),
    QT_TRANSLATE_NOOP("Core", "Add Chord"),
    QT_TRANSLATE_NOOP("Core", "Add events"),
    QT_TRANSLATE_NOOP("Core", "Add mark"),
    QT_TRANSLATE_NOOP("Core", "Add note"),
    QT_TRANSLATE_NOOP("Core", "Add pan point"),
    QT_TRANSLATE_NOOP("Core", "Add tempo change"),
    QT_TRANSLATE_NOOP("Core", "Add volume point"),
    QT_TRANSLATE_NOOP("Core", "Align Events"),
    QT_TRANSLATE_NOOP("Core", "Change QChord properties"),
    QT_TRANSLATE_NOOP("Core", "Change chord type"),
    QT_TRANSLATE_NOOP("Core", "Change effects"),
    QT_TRANSLATE_NOOP("Core", "Change event properties"),
    QT_TRANSLATE_NOOP("Core", "Change events time properties"),
    QT_TRANSLATE_NOOP("Core", "Change events volume"),
    QT_TRANSLATE_NOOP("Core", "Change length"),
    QT_TRANSLATE_NOOP("Core", "Change mark name"),
    QT_TRANSLATE_NOOP("Core", "Change mute channel"),
    QT_TRANSLATE_NOOP("Core", "Change name"),
    QT_TRANSLATE_NOOP("Core", "Change name channel"),
    QT_TRANSLATE_NOOP("Core", "Change note properties"),
    QT_TRANSLATE_NOOP("Core", "Change note"),
    QT_TRANSLATE_NOOP("Core", "Change output channel"),
    QT_TRANSLATE_NOOP("Core", "Change pan channel"),
    QT_TRANSLATE_NOOP("Core", "Change pan point"),
    QT_TRANSLATE_NOOP("Core", "Change patch"),
    QT_TRANSLATE_NOOP("Core", "Change properties"),
    QT_TRANSLATE_NOOP("Core", "Change solo channel"),
    QT_TRANSLATE_NOOP("Core", "Change song key"),
    QT_TRANSLATE_NOOP("Core", "Change tempo"),
    QT_TRANSLATE_NOOP("Core", "Change volume channel"),
    QT_TRANSLATE_NOOP("Core", "Change volume point"),
    QT_TRANSLATE_NOOP("Core", "Change volume"),
    QT_TRANSLATE_NOOP("Core", "Clear all channels status"),
    QT_TRANSLATE_NOOP("Core", "Clear Mute"),
    QT_TRANSLATE_NOOP("Core", "Clear Solo"),
    QT_TRANSLATE_NOOP("Core", "Clear channel events"),
    QT_TRANSLATE_NOOP("Core", "Copy events"),
    QT_TRANSLATE_NOOP("Core", "Cut events"),
    QT_TRANSLATE_NOOP("Core", "Delete channel"),
    QT_TRANSLATE_NOOP("Core", "Delete events"),
    QT_TRANSLATE_NOOP("Core", "Delete mark"),
    QT_TRANSLATE_NOOP("Core", "Delete pan point"),
    QT_TRANSLATE_NOOP("Core", "Delete tempo change"),
    QT_TRANSLATE_NOOP("Core", "Delete volume point"),
    QT_TRANSLATE_NOOP("Core", "Legato"),
    QT_TRANSLATE_NOOP("Core", "Modify tempo change BPM"),
    QT_TRANSLATE_NOOP("Core", "Modify tempo change position"),
    QT_TRANSLATE_NOOP("Core", "Move Events"),
    QT_TRANSLATE_NOOP("Core", "Move events"),
    QT_TRANSLATE_NOOP("Core", "Move mark"),
    QT_TRANSLATE_NOOP("Core", "Move pan point"),
    QT_TRANSLATE_NOOP("Core", "Move volume point"),
    QT_TRANSLATE_NOOP("Core", "Paste events"),
    QT_TRANSLATE_NOOP("Core", "Recording"),
    QT_TRANSLATE_NOOP("Core", "Resize events"),
    QT_TRANSLATE_NOOP("Core", "Shorten song"),
    QT_TRANSLATE_NOOP("Core", "Transpose song"),
    QT_TRANSLATE_NOOP("Core", "add bars"),
    QT_TRANSLATE_NOOP("Core", "add free bar"),
    QT_TRANSLATE_NOOP("Core", "change speed"),
    // titles and work
    QT_TRANSLATE_NOOP("Core", "Confirm"),
    QT_TRANSLATE_NOOP("Core", "Error"),
    QT_TRANSLATE_NOOP("Core", "Export to audio"),
    QT_TRANSLATE_NOOP("Core", "Export to WMA"),
    QT_TRANSLATE_NOOP("Core", "Export to midi file"),
    QT_TRANSLATE_NOOP("Core", "Exporting to midi %1"),
    QT_TRANSLATE_NOOP("Core", "Import Midi File"),
    QT_TRANSLATE_NOOP("Core", "Loading %1 %"),
    QT_TRANSLATE_NOOP("Core", "Mixing the song down"),
    QT_TRANSLATE_NOOP("Core", "Open File"),
    QT_TRANSLATE_NOOP("Core", "Save File"),
    // kinds of file
    QT_TRANSLATE_NOOP("Core", "All Files (%1)"),
    QT_TRANSLATE_NOOP("Core", "Midi Files (%1)"),
    QT_TRANSLATE_NOOP("Core", "Sound font files (%1)"),
    QT_TRANSLATE_NOOP("Core", "Tonvex Files (%1)"),
    // the start
    QT_TRANSLATE_NOOP("Core", "Can't create forlder: %1\nTonvex will now exit"),
    QT_TRANSLATE_NOOP("Core", "Could not create folder: %1\nTonvex will exit now"),
    QT_TRANSLATE_NOOP("Core", "Could not create temp folder, Undo function will be disabled"),
    QT_TRANSLATE_NOOP("Core", "Couldn't find paths setup. Tonvex will now exit"),
    QT_TRANSLATE_NOOP("Core", "Error retrieving path: %1\n"),
    QT_TRANSLATE_NOOP("Core",
                      "Some files that ship with Tonvex could not be copied to your folders. Check that "
                      "there is space and that the folders can be written to.\n%1"),
    QT_TRANSLATE_NOOP("Core", "The settings could not be saved. Check that your configuration folder can be "
                              "written to."),
    QT_TRANSLATE_NOOP("Core", "The keys of the functions could not be saved.\n%1"),
    // devices
    QT_TRANSLATE_NOOP("Core", "Can't initialize device: \n%1"),
    QT_TRANSLATE_NOOP("Core", "Can't open Output device\nTry configuring the Output device"),
    QT_TRANSLATE_NOOP("Core", "Error initializing Input Device: %1"),
    QT_TRANSLATE_NOOP("Core", "Error initializing Keyboard Input\nSome keys will be disabled"),
    QT_TRANSLATE_NOOP("Core", "Error setting clock"),
    QT_TRANSLATE_NOOP("Core", "No device"),
    QT_TRANSLATE_NOOP("Core", "No sound device was found. Everything goes on in silence."),
    QT_TRANSLATE_NOOP("Core", "SoundFont synthesizer"),
    QT_TRANSLATE_NOOP("Core", "The MIDI keyboard \"%1\" has gone. The computer keyboard still plays."),
    QT_TRANSLATE_NOOP("Core", "The MIDI keyboard has gone. The computer keyboard still plays."),
    QT_TRANSLATE_NOOP("Core", "The MIDI output \"%1\" has gone. Everything goes on in silence."),
    QT_TRANSLATE_NOOP("Core", "The MIDI output has gone. Everything goes on in silence."),
    QT_TRANSLATE_NOOP("Core", "The sound device \"%1\" has gone. Everything goes on in silence."),
    QT_TRANSLATE_NOOP("Core", "The sound device has gone. Everything goes on in silence."),
    QT_TRANSLATE_NOOP("Core", "Channel %1 (Drums)"),
    QT_TRANSLATE_NOOP("Core", "Channel %1"),
    // parameters of effects
    QT_TRANSLATE_NOOP("Core", "Bandwidth"),
    QT_TRANSLATE_NOOP("Core", "Centre frequency"),
    QT_TRANSLATE_NOOP("Core", "Delay"),
    QT_TRANSLATE_NOOP("Core", "Depth"),
    QT_TRANSLATE_NOOP("Core", "Edge"),
    QT_TRANSLATE_NOOP("Core", "Feedback"),
    QT_TRANSLATE_NOOP("Core", "Frequency"),
    QT_TRANSLATE_NOOP("Core", "Gain"),
    QT_TRANSLATE_NOOP("Core", "High frequency ratio"),
    QT_TRANSLATE_NOOP("Core", "Input gain"),
    QT_TRANSLATE_NOOP("Core", "Left delay"),
    QT_TRANSLATE_NOOP("Core", "Lowpass before"),
    QT_TRANSLATE_NOOP("Core", "Phase"),
    QT_TRANSLATE_NOOP("Core", "Reverb mix"),
    QT_TRANSLATE_NOOP("Core", "Reverb time"),
    QT_TRANSLATE_NOOP("Core", "Right delay"),
    QT_TRANSLATE_NOOP("Core", "Swap sides"),
    QT_TRANSLATE_NOOP("Core", "Waveform"),
    QT_TRANSLATE_NOOP("Core", "Wet/dry mix"),
    // channels, marks, tempo
    QT_TRANSLATE_NOOP("Core", "Can't create more than %1 channels using the \ndistorted guitar style"),
    QT_TRANSLATE_NOOP("Core", "Can't create new channel (Max Channels reached)"),
    QT_TRANSLATE_NOOP("Core", "Clear this channel events ?"),
    QT_TRANSLATE_NOOP("Core", "Delete mark: %1 ?"),
    QT_TRANSLATE_NOOP("Core", "Delete this channel ?"),
    QT_TRANSLATE_NOOP("Core", "Invalid Value"),
    QT_TRANSLATE_NOOP("Core", "Invalid value: %1"),
    QT_TRANSLATE_NOOP("Core", "Please select a channel"),
    QT_TRANSLATE_NOOP("Core", "Please select a template."),
    QT_TRANSLATE_NOOP("Core", "You can only delete this channel \r\nthrough the Music creator window"),
    QT_TRANSLATE_NOOP("Core", "You need to select a channel"),
    QT_TRANSLATE_NOOP("Core", "You need to select a mark"),
    QT_TRANSLATE_NOOP("Core", "%1 Major"),
    QT_TRANSLATE_NOOP("Core", "%1 Minor"),
    // events
    QT_TRANSLATE_NOOP("Core", "N: %1 Vol: %2"),
    QT_TRANSLATE_NOOP("Core", "%1 (%2) Vol: %3"),
    QT_TRANSLATE_NOOP("Core", "Set FX: %1"),
    QT_TRANSLATE_NOOP("Core", "Set Patch : %1"),
    QT_TRANSLATE_NOOP("Core", "Chord %1 (%2)"),
    QT_TRANSLATE_NOOP("Core", "%1, position %2, length %3 beats, volume %4"),
    QT_TRANSLATE_NOOP("Core", "%1, position %2, length %3 beat, volume %4"),
    QT_TRANSLATE_NOOP("Core", "%1, position %2, length %3 beats"),
    QT_TRANSLATE_NOOP("Core", "%1, position %2, length %3 beat"),
    QT_TRANSLATE_NOOP("Core", "%1, position %2"),
    QT_TRANSLATE_NOOP("Core", "%1 triplet"),
    QT_TRANSLATE_NOOP("Core", "You need to select one or more events to access the time properties"),
    QT_TRANSLATE_NOOP("Core", "%1 event(s) will be deleted (the range of the notes\r\nmust be between "
                              "0-127)\r\nContinue ?"),
    QT_TRANSLATE_NOOP("Core", "%1 event(s) will be deleted (the start of the events\r\ncan't be less than "
                              "1:0:0)\r\nContinue ?"),
    // functions and their keys
    QT_TRANSLATE_NOOP("Core", "Move channel Pan 10% Right"),
    QT_TRANSLATE_NOOP("Core", "Move channel Pan 10% Left"),
    QT_TRANSLATE_NOOP("Core", "Center channel Pan"),
    QT_TRANSLATE_NOOP("Core", "Enable/Disable Metronome"),
    QT_TRANSLATE_NOOP("Core", "Setup Metronome"),
    QT_TRANSLATE_NOOP("Core", "Use Midi Keyboard as input"),
    QT_TRANSLATE_NOOP("Core", "Increase channel volume 10%"),
    QT_TRANSLATE_NOOP("Core", "Decrease channel volume 10%"),
    QT_TRANSLATE_NOOP("Core", "Set channel Patch"),
    QT_TRANSLATE_NOOP("Core", "Select Channel"),
    QT_TRANSLATE_NOOP("Core", "Delete Channel"),
    QT_TRANSLATE_NOOP("Core", "Clear Channel Events"),
    QT_TRANSLATE_NOOP("Core", "Undo last action"),
    QT_TRANSLATE_NOOP("Core", "Redo last action"),
    QT_TRANSLATE_NOOP("Core", "Set output channel"),
    QT_TRANSLATE_NOOP("Core", "Align channel events"),
    QT_TRANSLATE_NOOP("Core", "Set Channel FX: Reverb"),
    QT_TRANSLATE_NOOP("Core", "Set Channel FX: Chorus"),
    QT_TRANSLATE_NOOP("Core", "Set Channel FX: Flanger"),
    QT_TRANSLATE_NOOP("Core", "Set Channel FX: Echo"),
    QT_TRANSLATE_NOOP("Core", "Set Channel FX: Distortion"),
    QT_TRANSLATE_NOOP("Core", "Record"),
    QT_TRANSLATE_NOOP("Core", "Play song"),
    QT_TRANSLATE_NOOP("Core", "Rewind 5 seconds"),
    QT_TRANSLATE_NOOP("Core", "Rewind to start of song"),
    QT_TRANSLATE_NOOP("Core", "Forward 5 seconds"),
    QT_TRANSLATE_NOOP("Core", "Start Practice mode"),
    QT_TRANSLATE_NOOP("Core", "Mute Channel"),
    QT_TRANSLATE_NOOP("Core", "Solo Channel"),
    QT_TRANSLATE_NOOP("Core", "Set record mode: blend"),
    QT_TRANSLATE_NOOP("Core", "Set record mode: overwrite"),
    QT_TRANSLATE_NOOP("Core", "Clear all channels mute/solo status"),
    QT_TRANSLATE_NOOP("Core", "Decrease Rec speed 10 %"),
    QT_TRANSLATE_NOOP("Core", "Increase Rec speed 10 %"),
    QT_TRANSLATE_NOOP("Core", "Select Mark"),
    QT_TRANSLATE_NOOP("Core", "Set mark start at current play position"),
    QT_TRANSLATE_NOOP("Core", "Set mark end at current play position"),
    QT_TRANSLATE_NOOP("Core", "Unselect mark (select none)"),
    QT_TRANSLATE_NOOP("Core", "Select Notes octave: %1"),
    QT_TRANSLATE_NOOP("Core", "Select Qchords octave: %1"),
    QT_TRANSLATE_NOOP("Core", "Add new channel"),
    QT_TRANSLATE_NOOP("Core", "Go to end of song"),
    QT_TRANSLATE_NOOP("Core", "Set Rec speed to 100%"),
    QT_TRANSLATE_NOOP("Core", "Stop recording/playing"),
    QT_TRANSLATE_NOOP("Core", "Toggle channel Mute on/off"),
    QT_TRANSLATE_NOOP("Core", "Toggle channel Solo on/off"),
    QT_TRANSLATE_NOOP("Core", "Shift+ %1"),
    QT_TRANSLATE_NOOP("Core", "Ctrl + %1"),
    QT_TRANSLATE_NOOP("Core", "Alt + %1"),
    QT_TRANSLATE_NOOP("Core", "numpad %1"),
    QT_TRANSLATE_NOOP("Core", "BackSpace"),
    QT_TRANSLATE_NOOP("Core", "Tab"),
    QT_TRANSLATE_NOOP("Core", "Enter"),
    QT_TRANSLATE_NOOP("Core", "Escape"),
    QT_TRANSLATE_NOOP("Core", "Page Up"),
    QT_TRANSLATE_NOOP("Core", "Page Down"),
    QT_TRANSLATE_NOOP("Core", "End"),
    QT_TRANSLATE_NOOP("Core", "Home"),
    QT_TRANSLATE_NOOP("Core", "Left arrow"),
    QT_TRANSLATE_NOOP("Core", "Up arrow"),
    QT_TRANSLATE_NOOP("Core", "Right arrow"),
    QT_TRANSLATE_NOOP("Core", "Down Arrow"),
    QT_TRANSLATE_NOOP("Core", "Insert"),
    QT_TRANSLATE_NOOP("Core", "Delete"),
    // keys and chords
    QT_TRANSLATE_NOOP("Core", "Assign key canceled"),
    QT_TRANSLATE_NOOP("Core", "Can't set new key (key is reserved for a special function)\r\nPlease "
                              "select another key"),
    QT_TRANSLATE_NOOP("Core", "Key already used, replace ?"),
    QT_TRANSLATE_NOOP("Core", "Key assigned"),
    QT_TRANSLATE_NOOP("Core", "Key not supported, please select another key"),
    QT_TRANSLATE_NOOP("Core", "This function key is locked and can't be changed"),
    QT_TRANSLATE_NOOP("Core", "%1\nDelete  ?"),
    QT_TRANSLATE_NOOP("Core", "%1\nOverwrite ?"),
    QT_TRANSLATE_NOOP("Core", "Chord must have less than 7 notes"),
    QT_TRANSLATE_NOOP("Core", "Error deleting file"),
    QT_TRANSLATE_NOOP("Core", "Invalid file format (keyboard)"),
    QT_TRANSLATE_NOOP("Core", "Invalid picking delay"),
    QT_TRANSLATE_NOOP("Core", "Keyboard setup was modified.\nSave changes ?"),
    QT_TRANSLATE_NOOP("Core", "No chord selected"),
    QT_TRANSLATE_NOOP("Core", "Notes: %1"),
    QT_TRANSLATE_NOOP("Core", "Please select the beats per note"),
    QT_TRANSLATE_NOOP("Core", "The number of the notes of the pattern must be between 2 and 8."),
    QT_TRANSLATE_NOOP("Core", "You must select a note"),
    QT_TRANSLATE_NOOP("Core", "You must select two notes"),
    // files
    QT_TRANSLATE_NOOP("Core", "A file of that name is there."),
    QT_TRANSLATE_NOOP("Core", "A file name with a line break cannot stand in the default list: %1"),
    QT_TRANSLATE_NOOP("Core", "Can't find a free project ID.\r\nFile won't be saved"),
    QT_TRANSLATE_NOOP("Core", "Can't find the directory: %1\r\nDo you want to create the directory ?"),
    QT_TRANSLATE_NOOP("Core", "Can't open file: %1"),
    QT_TRANSLATE_NOOP("Core", "Cannot load chord file"),
    QT_TRANSLATE_NOOP("Core", "Cannot open '%1'"),
    QT_TRANSLATE_NOOP("Core",
                      "Could not load the default sf2 file(s).\r\nUse the 'Project menu ->Soundfont file "
                      "list' option to specify a new file\r\nor change the Output device (Options menu) to "
                      "use the soundcard \r\ndefault midi sounds."),
    QT_TRANSLATE_NOOP("Core", "Error loading file"),
    QT_TRANSLATE_NOOP("Core", "Error loading file. This file was saved using \r\na newer Tonvex version"),
    QT_TRANSLATE_NOOP("Core", "Error saving file"),
    QT_TRANSLATE_NOOP("Core", "Error saving file\r\n%1"),
    QT_TRANSLATE_NOOP("Core", "File does not exist"),
    QT_TRANSLATE_NOOP("Core", "File has changed. Save changes ?"),
    QT_TRANSLATE_NOOP("Core", "File version not supported"),
    QT_TRANSLATE_NOOP("Core", "Invalid SF2 file"),
    QT_TRANSLATE_NOOP("Core", "Invalid file format (tvx)"),
    QT_TRANSLATE_NOOP("Core", "Overwrite file ? \r\n%1"),
    QT_TRANSLATE_NOOP("Core", "Please type the filename"),
    QT_TRANSLATE_NOOP("Core",
                      "Some soundfont files used by this project don't exist.\r\nThe default soundfont list "
                      "will be used instead.\r\nThis might result in midi channels without sound (to "
                      "fix\r\nthe problem select a valid patch for the channel)"),
    QT_TRANSLATE_NOOP("Core", "The directory cannot be created: %1\r\n%2"),
    QT_TRANSLATE_NOOP("Core",
                      "The files of this step can't be read any more.\r\nIt can't be brought back, nor can "
                      "those before it."),
    QT_TRANSLATE_NOOP("Core",
                      "The installation of Tonvex used to create this file\r\nis not the same as this one, "
                      "this might result in invalid\r\naudio channels."),
    QT_TRANSLATE_NOOP("Core", "You must select a file from the list."),
    QT_TRANSLATE_NOOP("Core", "You need to close the Practice window to create a new file"),
    QT_TRANSLATE_NOOP("Core", "You need to close the Practice window to open a file"),
    QT_TRANSLATE_NOOP("Core", "You need to close the Practice window to start recording"),
    // MIDI files and mixdowns
    QT_TRANSLATE_NOOP("Core", "%1 is ready.\n%2"),
    QT_TRANSLATE_NOOP("Core", "%1 bits"),
    QT_TRANSLATE_NOOP("Core", "%1 kbit/s"),
    QT_TRANSLATE_NOOP("Core", "32 bits, floating point"),
    QT_TRANSLATE_NOOP("Core", "quality %1"),
    QT_TRANSLATE_NOOP("Core", "Audio channels are not supported by midi files and\r\nwon't be saved."),
    QT_TRANSLATE_NOOP("Core", "Error exporting file"),
    QT_TRANSLATE_NOOP("Core", "Error loading Midi file"),
    QT_TRANSLATE_NOOP("Core",
                      "Length %1, peak %2 dB, loudness %3 LUFS. The loudest places are cut off; turn the "
                      "channels down by %4 dB to keep them"),
    QT_TRANSLATE_NOOP("Core", "Length %1, peak %2 dB, loudness %3 LUFS"),
    QT_TRANSLATE_NOOP("Core", "Mixing down needs the SoundFont synthesizer as the output, and a soundfont"),
    QT_TRANSLATE_NOOP("Core",
                      "The ending of the name picks the kind of file: .wav, .flac, .ogg, .opus, .mp3 or "
                      ".wma"),
    QT_TRANSLATE_NOOP("Core", "The song could not be exported.\n%1"),
    QT_TRANSLATE_NOOP("Core", "There is nothing in the song to be heard"),
    QT_TRANSLATE_NOOP("Core",
                      "This is a experimental function and some Midi file\r\nwon't be compatible with "
                      "Tonvex"),
    QT_TRANSLATE_NOOP("Core", "Time format not supported"),
    QT_TRANSLATE_NOOP("Core", "the song is longer than a WAV file can be (4 GB); FLAC can hold it"),
    QT_TRANSLATE_NOOP("Core", "the sound could not be written"),
    QT_TRANSLATE_NOOP("Core", "this system's media library cannot write Windows Media Audio"),
    QT_TRANSLATE_NOOP("Core", "this system's media library cannot write Windows Media files"),
    QT_TRANSLATE_NOOP("Core", "this system's sound file library cannot write %1"),
    QT_TRANSLATE_NOOP("Core", "the song is too large for a file"),
};
// NOLINTEND(bugprone-suspicious-missing-comma)

struct Pattern {
    const char* source;
    QString first; ///< what stands before the first place and behind the last: tells most of them apart
    QString last;
    QRegularExpression form;
};

QString Lower_First(QString text) {
    if (!text.isEmpty())
        text[0] = text[0].toLower();
    return text;
}

struct Words {
    Words() {
        for (const char* source : SOURCES) {
            const QString text = QString::fromUtf8(source);
            whole.insert(text, source);
            if (!lower.contains(text.toLower()))
                lower.insert(text.toLower(), source);
            if (!text.contains(QLatin1String("%1")))
                continue;
            static const QRegularExpression PLACE(QStringLiteral("%[1-9]"));
            QStringList pieces = text.split(PLACE);
            const QString first = pieces.first();
            const QString last = pieces.last();
            std::transform(pieces.begin(), pieces.end(), pieces.begin(),
                           [](const QString& piece) { return QRegularExpression::escape(piece); });
            // A place takes as little as it can, but for the last one.
            patterns.append(
                {source, first, last,
                 QRegularExpression(QRegularExpression::anchoredPattern(pieces.join(QLatin1String("(.*?)"))),
                                    QRegularExpression::DotMatchesEverythingOption)});
        }
    }
    QHash<QString, const char*> whole;
    QHash<QString, const char*> lower; ///< the undo menu writes labels small; the first of two that differ so
    QVector<Pattern> patterns;
};

QString Translated(const char* source) {
    return QCoreApplication::translate(CONTEXT, source);
}

QString Look_Up(const QString& text, int depth) {
    static const Words WORDS;
    if (const char* source = WORDS.whole.value(text))
        return Translated(source);
    if (const char* source = WORDS.lower.value(text))
        return Lower_First(Translated(source));
    if (depth >= DEEPEST)
        return text;
    for (const Pattern& pattern : WORDS.patterns) {
        if (!text.startsWith(pattern.first) || !text.endsWith(pattern.last))
            continue;
        const QRegularExpressionMatch match = pattern.form.match(text);
        if (!match.hasMatch())
            continue;
        // In one pass: what stands in a place may hold a per cent sign itself.
        const QString form = Translated(pattern.source);
        QString filled;
        for (qsizetype i = 0; i < form.size(); ++i) {
            const int place =
                form[i] == QLatin1Char('%') && i + 1 < form.size() ? form[i + 1].digitValue() : -1;
            if (place >= 1 && place <= match.lastCapturedIndex()) {
                filled += Look_Up(match.captured(place), depth + 1);
                ++i;
            } else {
                filled += form[i];
            }
        }
        return filled;
    }
    return text;
}

} // namespace

QString Core_Words(const std::string& text) {
    // Views ask for every event that they draw: without a catalogue nothing is to be looked for.
    if (Translated(SOURCES[0]) == QLatin1String(SOURCES[0]))
        return QString::fromStdString(text);
    return Look_Up(QString::fromStdString(text), 0);
}

const std::vector<const char*>& Core_Word_Sources() {
    static const std::vector<const char*> ALL(std::begin(SOURCES), std::end(SOURCES));
    return ALL;
}

} // namespace tonvex
