// The pop-up menus of the events editor.

#include "editors/windows/events_editor_ctrl.h"

#include <QInputDialog>
#include <QMenu>

#include <cmath>

namespace tonvex {

namespace {

constexpr int OCTAVE = 12;
constexpr int VOLUME_STEP = 10;
/// Divisions of the items mnuAlignToBeats: 2 to the power of the item's index, then triplets.
constexpr int ALIGN_ITEMS = 4;
/// Beats to either side of a click in which a tempo change is meant.
constexpr double TEMPO_REACH_PIXELS = 40.0;
constexpr int MOST_BARS_AT_ONCE = 1000;

} // namespace

void EventsEditorCtrl::Fill_Event_Menu(QMenu* menu) {
    const std::size_t count = display.Own().Selected_Count();
    bool chords = false;
    bool editable = false;
    for (const Ev_Display_Row& row : display.Own().Rows()) {
        chords = chords || (row.Selected && row.Kind == EV_QCHORD);
        editable = editable || (row.Selected && (row.Kind == EV_QCHORD || row.Kind == EV_NOTE));
    }
    const auto add = [&](QMenu* to, const QString& text, const QString& key, bool enabled,
                         const std::function<void()>& act) {
        // The key is shown, not bound: the roll takes it while it has the focus.
        QAction* action = to->addAction(key.isEmpty() ? text : text + QLatin1Char('\t') + key, this, act);
        action->setEnabled(enabled);
        return action;
    };
    add(menu, tr("&Properties..."), tr("Alt+Enter"), editable, [this] { Open_Properties(); });
    add(menu, tr("&Time properties..."), tr("Ctrl+T"), true, [this] { Open_Time_Properties(); });
    QMenu* volume = menu->addMenu(tr("&Volume"));
    volume->setEnabled(count > 0);
    add(volume, tr("&Set volume..."), tr("Ctrl+L"), true, [this] { Open_Volume(); });
    add(volume, tr("&Louder by %1").arg(VOLUME_STEP), {}, true, [this] { Change_Volume(VOLUME_STEP); });
    add(volume, tr("S&ofter by %1").arg(VOLUME_STEP), {}, true, [this] { Change_Volume(-VOLUME_STEP); });
    QMenu* types = menu->addMenu(tr("&Change chord type"));
    types->setEnabled(chords);
    for (int type = 0; type < NotesStuff::CHORD_TYPES; ++type) {
        const std::string& name = session.notes.ChordTypeTable[static_cast<std::size_t>(type)].TypeName;
        if (!name.empty())
            add(types, QString::fromStdString(name), {}, true,
                [this, type] { edits.Set_Chord_Type(Selected(), type); });
    }
    menu->addSeparator();
    QMenu* align = menu->addMenu(tr("&Align to beats"));
    align->setEnabled(count > 0);
    for (int item = 0; item < ALIGN_ITEMS; ++item) {
        const int div = static_cast<int>(std::lround(std::pow(2.0, item)));
        QAction* action =
            add(align, QString::fromLatin1(Grid_Text(div)), {}, true, [this, div] { Align_To_Beats(div); });
        action->setObjectName(QStringLiteral("mnuAlignToBeats%1").arg(item + 1));
    }
    align->addSeparator();
    for (const int div : {3, 6, 12})
        add(align, QString::fromLatin1(Grid_Text(div)), {}, true, [this, div] { Align_To_Beats(div); });
    align->addSeparator();
    add(align, tr("Repeat (%1)").arg(QString::fromLatin1(Grid_Text(lastAlign))), tr("Ctrl+G"), true,
        [this] { Align_To_Beats(lastAlign); });
    add(menu, tr("&Legato"), tr("Ctrl+J"), count > 1, [this] { Run(Roll_Command::Legato); });
    add(menu, tr("Octave &up"), tr("Ctrl+Up"), count > 0, [this] { Transpose(OCTAVE); });
    add(menu, tr("Octave &down"), tr("Ctrl+Down"), count > 0, [this] { Transpose(-OCTAVE); });
    menu->addSeparator();
    add(menu, tr("Cu&t"), tr("Ctrl+X"), count > 0, [this] { Run(Roll_Command::Cut); });
    add(menu, tr("C&opy"), tr("Ctrl+C"), count > 0, [this] { Run(Roll_Command::Copy); });
    add(menu, tr("Pa&ste"), tr("Ctrl+V"), !clipboard.Is_Empty(), [this] { Run(Roll_Command::Paste); });
    add(menu, tr("D&elete"), tr("Del"), count > 0, [this] { Run(Roll_Command::Delete); });
    menu->addSeparator();
    add(menu, tr("Select &all"), tr("Ctrl+A"), true, [this] { Run(Roll_Command::Select_All); });
    add(menu, tr("&Invert selection"), tr("Ctrl+Shift+A"), true,
        [this] { Run(Roll_Command::Invert_Selection); });
    menu->addSeparator();
    add(menu, tr("Show other c&hannels..."), {}, true, [this] { CView_ShowSelChannels(); });
    add(menu, tr("Vie&w..."), {}, true, [this] { Open_View(); });
    add(menu, tr("Undo li&st..."), {}, true, [this] { Open_Undo_List(); });
}

void EventsEditorCtrl::Show_Event_Menu(const QPoint& at) {
    if (display.Store() == nullptr)
        return;
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    Fill_Event_Menu(menu);
    menu->popup(at);
}

void EventsEditorCtrl::Show_Rule_Menu(const QPoint& at, double beat) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const double place = view->Gesture().Grid.Snap(beat);
    menu->addAction(tr("Add new tempo change..."), this, [this, place] { Add_Tempo_Change(place); });
    const double reach = view->Window().Geometry.Beat_At(TEMPO_REACH_PIXELS);
    for (const TempoChange& change : session.tempoChanges.In_Time_Order()) {
        if (beat < change.BeatN || beat > change.BeatN + reach)
            continue;
        menu->addAction(tr("Delete tempo change"), this,
                        [this, id = change.ID] { session.hub->Message(this, MSG_DELETE_TEMPO_CHANGE, id); });
        break;
    }
    menu->popup(at);
}

void EventsEditorCtrl::Add_Tempo_Change(double beat) {
    auto* question = new QInputDialog(this);
    question->setWindowTitle(tr("Add new tempo change"));
    question->setLabelText(tr("BPM:"));
    question->setTextValue(QStringLiteral("100"));
    connect(question, &QInputDialog::textValueSelected, this, [this, beat](const QString& typed) {
        bool whole = false;
        const int tempo = typed.trimmed().toInt(&whole);
        if (!whole || tempo < 1 || tempo > std::numeric_limits<std::int16_t>::max())
            session.doors.dialogs.Show_Message(Box_Kind::Warning, "Invalid value: " + typed.toStdString());
        else
            session.hub->Message(this, MSG_ADD_TEMPO_CHANGE, beat, std::int32_t{tempo});
    });
    Open(question);
}

void EventsEditorCtrl::Show_Bar_Menu(const QPoint& at, int bar) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setObjectName(QStringLiteral("Mnu_BarRClick"));
    menu->addAction(tr("add free bar"), this, [this, bar] {
        session.hub->Message(this, MSG_INSERT_BARS, std::int32_t{bar}, std::int32_t{1});
    });
    menu->addAction(tr("Insert multiple bars"), this, [this, bar] { Insert_Multiple_Bars(bar); });
    for (QAction* action : menu->actions())
        action->setEnabled(!session.transport.Song_Runs());
    menu->popup(at);
}

void EventsEditorCtrl::Insert_Multiple_Bars(int bar) {
    auto* question = new QInputDialog(this);
    question->setWindowTitle(tr("Insert multiple bars"));
    question->setLabelText(tr("Number of bars: "));
    connect(question, &QInputDialog::textValueSelected, this, [this, bar](const QString& typed) {
        bool whole = false;
        const int count = typed.trimmed().toInt(&whole);
        if (!whole || count < 1 || count > MOST_BARS_AT_ONCE)
            session.doors.dialogs.Show_Message(Box_Kind::Warning, "Invalid value: " + typed.toStdString());
        else
            session.hub->Message(this, MSG_INSERT_BARS, std::int32_t{bar}, std::int32_t{count});
    });
    Open(question);
}

void EventsEditorCtrl::Show_Mark_Menu(const QPoint& at, double beat, int markRow) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const double place = view->Gesture().Grid.Snap(beat);
    menu->addAction(tr("Add new mark here"), this, [this, place] {
        session.hub->Message(this, MSG_ADD_MARK, place, std::monostate{}, std::string("New Mark"));
    });
    if (markRow >= 0 && session.marks.Is_Live(markRow)) {
        const std::string name = session.marks.Row(markRow).MarkName;
        menu->addAction(tr("Move mark to the play position"), this, [this, markRow] {
            session.hub->Message(this, MSG_MOVE_MARK, std::int32_t{markRow}, session.transport.PlayPosition);
        });
        menu->addAction(tr("Delete Mark"), this, [this, markRow, name] {
            if (session.doors.dialogs.Ask_YesNo("Delete mark: " + name + " ?"))
                session.hub->Message(this, MSG_DELETE_MARK, std::int32_t{markRow});
        });
    }
    menu->popup(at);
}

} // namespace tonvex
