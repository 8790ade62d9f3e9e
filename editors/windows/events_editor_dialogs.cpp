// The dialogs of the events editor, and what becomes of their results.

#include "editors/windows/events_editor_ctrl.h"

#include "editors/windows/frm_ev_ed_set_vol.h"
#include "editors/windows/frm_ev_ed_time_pos_properties.h"
#include "editors/windows/frm_ev_ed_view.h"
#include "editors/windows/frm_sel_channels_view.h"
#include "editors/windows/frm_undo_list.h"
#include "input/windows/frm_piano_layout.h"
#include "input/windows/frm_qchord_config.h"
#include "song/time_text.h"
#include "widgets/frm_patch_selection_win.h"

#include <QDialog>

#include <algorithm>

namespace tonvex {

namespace {

constexpr int NEW_CHORD_VOLUME = 100;

} // namespace

void EventsEditorCtrl::Open(QDialog* opened) {
    // One at a time: they are all about the selection.
    if (dialog != nullptr)
        dialog->reject();
    dialog = opened;
    opened->setAttribute(Qt::WA_DeleteOnClose);
    // A run is not held up by it.
    opened->open();
}

void EventsEditorCtrl::Open_Properties() {
    const Event_Edits::IDs ids = Selected();
    const ChannelClass* store = display.Store();
    for (const std::int32_t eventId : ids) {
        const auto event = store->ReadEvent(store->GetEvent_I(eventId));
        if (event && event->Note != nullptr) {
            auto* window = new frmPianoLayout(session, theme, display.Channel(), this);
            window->SetMode(Piano_Selection::Mode::Note);
            window->Disable_VariableOctave();
            window->Set_About(view->Spoken(eventId));
            window->SetVolume(event->Note->Vol);
            window->SetChord({event->Note->Note});
            connect(window, &QDialog::accepted, this, [this, eventId] { frmPianoLayoutObj_Closed(eventId); });
            Open(window);
            return;
        }
        if (event && event->QChord != nullptr) {
            auto* window = new frmQChordConfig(session, theme, display.Channel(), this);
            window->Disable_VariableOctave();
            window->Set_About(view->Spoken(eventId));
            window->Load_WorkStruct(*event->QChord);
            connect(window, &QDialog::accepted, this,
                    [this, eventId] { frmQChordConfigOBJ_Closed(eventId, 0.0); });
            Open(window);
            return;
        }
        if (event && event->Kind == EV_PATCH) {
            auto* window = new frmPatchSelectionWin(session, display.Channel(), this);
            window->Choose_For(event->DataRef, [this, eventId](int patchRow) {
                edits.Set_Properties(eventId, PatchData{patchRow}, "Change patch");
            });
            Open(window);
            return;
        }
    }
}

void EventsEditorCtrl::frmPianoLayoutObj_Closed(std::int32_t eventId) {
    const auto* window = qobject_cast<frmPianoLayout*>(dialog);
    if (window == nullptr || window->GetChord().empty())
        return;
    NoteData note;
    note.Note = static_cast<std::uint8_t>(window->GetChord().front());
    note.Vol = static_cast<std::uint8_t>(window->GetVolume());
    edits.Set_Properties(eventId, note, "Change note properties");
}

void EventsEditorCtrl::Open_Chord_At(double beat, int note) {
    view->Set_Tool(Roll_Tool::Select);
    QChordData chord;
    // A major chord on the row that was clicked.
    const int octave = std::clamp(note / 12 - 1, 1, 6);
    session.notes.FillChordData(chord, note % 12, 0, octave, true);
    chord.ChordVol = NEW_CHORD_VOLUME;
    chord.Length = view->Gesture().NewLength;
    auto* window = new frmQChordConfig(session, theme, display.Channel(), this);
    window->Disable_VariableOctave();
    window->Set_About(tr("A chord at %1").arg(QString::fromStdString(Format_Beats(beat))));
    window->Load_WorkStruct(chord);
    connect(window, &QDialog::accepted, this,
            [this, beat] { frmQChordConfigOBJ_Closed(std::nullopt, beat); });
    Open(window);
}

void EventsEditorCtrl::frmQChordConfigOBJ_Closed(std::optional<std::int32_t> eventId, double beat) {
    const auto* window = qobject_cast<frmQChordConfig*>(dialog);
    if (window == nullptr)
        return;
    QChordData chord;
    window->Get_WorkStruct(chord);
    if (eventId) {
        edits.Set_Properties(*eventId, chord, "Change QChord properties");
        return;
    }
    chord.Length = std::max(view->Gesture().NewLength, Event_Edits::LEAST_LENGTH);
    const Event_Edits::IDs added = edits.Add({{beat, chord}}, "Add Chord");
    display.Own().Select(added);
    Update_View();
}

void EventsEditorCtrl::Open_Time_Properties() {
    const Event_Edits::IDs ids = Selected();
    if (ids.empty()) {
        session.doors.dialogs.Show_Message(
            Box_Kind::Information, "You need to select one or more events to access the time properties");
        return;
    }
    auto* window = new frmEvEd_TimePosProperties(session.doors.dialogs, theme, this);
    if (ids.size() == 1) {
        const Event_List& events = display.Own();
        const Ev_Display_Row& row = events.Rows()[static_cast<std::size_t>(events.Row_Of(ids.front()))];
        window->Show_Times(row.StartTime,
                           Has_Length(row.Kind) ? std::optional<double>(row.Length) : std::nullopt);
    }
    connect(window, &QDialog::accepted, this, &EventsEditorCtrl::frmTimePropertiesOBJ_Closed);
    Open(window);
}

void EventsEditorCtrl::frmTimePropertiesOBJ_Closed() {
    const auto* window = qobject_cast<frmEvEd_TimePosProperties*>(dialog);
    if (window != nullptr && (window->Start() || window->Length()))
        (void)edits.Set_Times(Selected(), window->Start(), window->Length(), window->Adds());
}

void EventsEditorCtrl::Open_Volume() {
    int volume = -1;
    for (const Ev_Display_Row& row : display.Own().Rows())
        if (row.Selected && Has_Volume(row.Kind) && volume < 0)
            volume = row.Vol;
    if (volume < 0)
        return;
    auto* window = new frmEvEd_SetVol(theme, volume, this);
    connect(window, &QDialog::accepted, this, &EventsEditorCtrl::frmVolumeObj_Closed);
    Open(window);
}

void EventsEditorCtrl::frmVolumeObj_Closed() {
    if (const auto* window = qobject_cast<frmEvEd_SetVol*>(dialog))
        edits.Set_Volume(Selected(), window->Volume());
}

void EventsEditorCtrl::Open_View() {
    auto* window = new frmEvEd_View(theme, view->Window().Options, session.notes, this);
    connect(window, &frmEvEd_View::soundFontsWanted, this, &EventsEditorCtrl::soundFontsWanted);
    connect(window, &QDialog::accepted, this, [this, window] {
        if (window->Notation() != session.notes.Global_Notation)
            emit noteNamesWanted(window->Notation());
        Set_Options(window->Options());
    });
    Open(window);
}

void EventsEditorCtrl::CView_ShowSelChannels() {
    auto* window = new frmSelChannelsView(session, theme, display, this);
    connect(window, &QDialog::accepted, this, &EventsEditorCtrl::frmSelChannelsViewOBJ_Closed);
    Open(window);
}

void EventsEditorCtrl::frmSelChannelsViewOBJ_Closed() {
    const auto* window = qobject_cast<frmSelChannelsView*>(dialog);
    if (window == nullptr)
        return;
    for (const auto& [channelId, shown] : window->Choice()) {
        if (shown)
            (void)display.CView_AddChannel(channelId);
        else
            display.CView_RemoveChannel(channelId);
    }
    Update_View();
}

void EventsEditorCtrl::Open_Undo_List() {
    Open(new frmUndoList(session, theme, this));
}

} // namespace tonvex
