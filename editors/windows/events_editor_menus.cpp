// The pop-up menus of the events editor.

#include "editors/windows/events_editor_ctrl.h"

#include "platform/qt/core_words.h"

#include <QInputDialog>
#include <QMenu>

#include <cmath>

namespace tonvex {

namespace {

constexpr double BEATS_PER_BAR = 4.0;
constexpr int OCTAVE = 12;
constexpr int VOLUME_STEP = 10;
/// Divisions of the items mnuAlignToBeats: 2 to the power of the item's index, then triplets.
constexpr int ALIGN_ITEMS = 4;
/// A tempo change is meant as far behind its line as its figure reaches.
constexpr double TEMPO_REACH_PIXELS = 40.0;
constexpr int MOST_BARS_AT_ONCE = 1000;

/// ID of the tempo change that stands there already.
std::optional<std::int32_t> Change_At(const TempoChangeClass& changes, double beat) {
    for (const TempoChange& change : changes.In_Time_Order())
        if (change.BeatN == beat)
            return change.ID;
    return std::nullopt;
}

} // namespace

void EventsEditorCtrl::Fill_Event_Menu(QMenu* menu, std::int32_t channelBehind) {
    const std::size_t count = display.Own().Selected_Count();
    bool chords = false;
    bool editable = false;
    for (const Ev_Display_Row& row : display.Own().Rows()) {
        chords = chords || (row.Selected && row.Kind == EV_QCHORD);
        editable = editable ||
                   (row.Selected && (row.Kind == EV_QCHORD || row.Kind == EV_NOTE || row.Kind == EV_PATCH));
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
    add(volume, tr("&Set volume..."), tr("Ctrl+L"), true, [this] {
        Open_Volume();
    })->setObjectName(QStringLiteral("Mnu_SetVol"));
    add(volume, tr("&Louder by %1").arg(VOLUME_STEP), {}, true, [this] {
        Change_Volume(VOLUME_STEP);
    })->setObjectName(QStringLiteral("Mnu_SetVol2"));
    add(volume, tr("S&ofter by %1").arg(VOLUME_STEP), {}, true, [this] {
        Change_Volume(-VOLUME_STEP);
    })->setObjectName(QStringLiteral("Mnu_SetVol3"));
    QMenu* types = menu->addMenu(tr("Change chord t&ype"));
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
    Fill_Align_Menu(align);
    add(menu, tr("Le&gato"), tr("Ctrl+J"), count > 1, [this] { Run(Roll_Command::Legato); });
    add(menu, tr("Octave &up"), tr("Ctrl+Up"), count > 0, [this] { Transpose(OCTAVE); });
    add(menu, tr("Octave &down"), tr("Ctrl+Down"), count > 0, [this] { Transpose(-OCTAVE); });
    menu->addSeparator();
    add(menu, tr("&Cut"), tr("Ctrl+X"), count > 0, [this] { Run(Roll_Command::Cut); });
    add(menu, tr("C&opy"), tr("Ctrl+C"), count > 0, [this] { Run(Roll_Command::Copy); });
    add(menu, tr("Pa&ste"), tr("Ctrl+V"), !clipboard.Is_Empty(), [this] { Run(Roll_Command::Paste); });
    add(menu, tr("D&elete"), tr("Del"), count > 0, [this] { Run(Roll_Command::Delete); });
    menu->addSeparator();
    add(menu, tr("Se&lect all"), tr("Ctrl+A"), true, [this] { Run(Roll_Command::Select_All); });
    add(menu, tr("&Invert selection"), tr("Ctrl+Shift+A"), true,
        [this] { Run(Roll_Command::Invert_Selection); });
    menu->addSeparator();
    // What the rules above the roll offer to the mouse, for the keyboard.
    const double beat = view->Cursor_Beat();
    QMenu* here = menu->addMenu(tr("At the cu&rsor"));
    add(here, tr("Add &chord..."), tr("Alt+Ins"), true,
        [this, beat, note = view->Cursor_Note()] { Open_Chord_At(beat, note); });
    here->addSeparator();
    Fill_Rule_Menu(here, beat);
    here->addSeparator();
    Fill_Bar_Menu(here, static_cast<int>(beat / BEATS_PER_BAR));
    here->addSeparator();
    Fill_Mark_Menu(here, beat, -1);
    if (channelBehind != NOT_GIVEN) {
        const int row = session.channels->ChannelI(channelBehind);
        QString name =
            QString::fromStdString(session.channels->Channels[static_cast<std::size_t>(row)].ChannelName);
        add(menu, tr("Edit \"%1\"").arg(name.replace(QLatin1Char('&'), QLatin1String("&&"))), {}, true,
            [this, channelBehind] { CView_ShowEvEditor(channelBehind); });
    }
    add(menu, tr("Show other c&hannels..."), {}, true, [this] { CView_ShowSelChannels(); });
    add(menu, tr("Vie&w..."), {}, true, [this] { Open_View(); });
    add(menu, tr("U&ndo list..."), {}, !session.transport.Song_Runs(), [this] { Open_Undo_List(); });
}

void EventsEditorCtrl::Fill_Align_Menu(QMenu* menu) {
    const auto add = [&](const QString& text, int div) {
        return menu->addAction(text, this, [this, div] { Align_To_Beats(div); });
    };
    for (int item = 0; item < ALIGN_ITEMS; ++item) {
        const int div = static_cast<int>(std::lround(std::pow(2.0, item)));
        add(Core_Words(Grid_Text(div)), div)
            ->setObjectName(QStringLiteral("mnuAlignToBeats%1").arg(item + 1));
    }
    menu->addSeparator();
    for (const int div : {3, 6, 12})
        add(Core_Words(Grid_Text(div)), div);
    menu->addSeparator();
    add(tr("Repeat (%1)").arg(Core_Words(Grid_Text(lastAlign))) + QLatin1Char('\t') + tr("Ctrl+G"),
        lastAlign);
}

void EventsEditorCtrl::Pop_Up(const QPoint& at, const std::function<void(QMenu*)>& fill) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    fill(menu);
    menu->popup(at);
}

void EventsEditorCtrl::Show_Event_Menu(const QPoint& at) {
    if (display.Store() == nullptr)
        return;
    const std::int32_t behind = view->Channel_Behind(view->mapFromGlobal(at));
    Pop_Up(at, [this, behind](QMenu* menu) { Fill_Event_Menu(menu, behind); });
}

void EventsEditorCtrl::Show_Rule_Menu(const QPoint& at, double beat) {
    Pop_Up(at, [this, beat](QMenu* menu) { Fill_Rule_Menu(menu, beat); });
}

void EventsEditorCtrl::Fill_Rule_Menu(QMenu* menu, double beat) {
    const double place = view->Grid().Snap(beat);
    menu->addAction(tr("Add new &tempo change..."), this, [this, place] { Add_Tempo_Change(place); });
    const double reach = view->Window().Geometry.Beat_At(theme.Px(TEMPO_REACH_PIXELS));
    for (const TempoChange& change : session.tempoChanges.In_Time_Order()) {
        if (beat < change.BeatN || beat > change.BeatN + reach)
            continue;
        menu->addAction(tr("&Delete tempo change"), this,
                        [this, id = change.ID] { session.hub->Message(this, MSG_DELETE_TEMPO_CHANGE, id); });
        break;
    }
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
        else if (const auto there = Change_At(session.tempoChanges, beat))
            session.hub->Message(this, MSG_SET_TEMPO_CHANGE, *there, std::int32_t{tempo});
        else
            session.hub->Message(this, MSG_ADD_TEMPO_CHANGE, beat, std::int32_t{tempo});
    });
    Open(question);
}

void EventsEditorCtrl::Show_Bar_Menu(const QPoint& at, int bar) {
    Pop_Up(at, [this, bar](QMenu* menu) {
        menu->setObjectName(QStringLiteral("Mnu_BarRClick"));
        Fill_Bar_Menu(menu, bar);
    });
}

void EventsEditorCtrl::Fill_Bar_Menu(QMenu* menu, int bar) {
    QAction* free = menu->addAction(tr("add free &bar"), this, [this, bar] {
        session.hub->Message(this, MSG_INSERT_BARS, std::int32_t{bar}, std::int32_t{1});
    });
    QAction* many =
        menu->addAction(tr("&Insert multiple bars"), this, [this, bar] { Insert_Multiple_Bars(bar); });
    for (QAction* action : {free, many})
        action->setEnabled(!session.transport.Song_Runs());
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
    Pop_Up(at, [this, beat, markRow](QMenu* menu) { Fill_Mark_Menu(menu, beat, markRow); });
}

void EventsEditorCtrl::Fill_Mark_Menu(QMenu* menu, double beat, int markRow) {
    const double place = view->Grid().Snap(beat);
    menu->addAction(tr("Add new &mark here"), this, [this, place] {
        session.hub->Message(this, MSG_ADD_MARK, place, std::monostate{}, std::string("New Mark"));
    });
    if (markRow >= 0 && session.marks.Is_Live(markRow)) {
        const std::string name = session.marks.Row(markRow).MarkName;
        menu->addAction(tr("M&ove mark to the play position"), this, [this, markRow] {
            session.hub->Message(this, MSG_MOVE_MARK, std::int32_t{markRow}, session.transport.PlayPosition);
        });
        menu->addAction(tr("D&elete Mark"), this, [this, markRow, name] {
            if (session.doors.dialogs.Ask_YesNo("Delete mark: " + name + " ?"))
                session.hub->Message(this, MSG_DELETE_MARK, std::int32_t{markRow});
        });
    }
}

} // namespace tonvex
