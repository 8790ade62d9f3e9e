#include "engine/windows/frm_recorder.h"
#include "platform/qt/virtual_keys.h"
#include "support/window_program.h"
#include "support/window_world.h"
#include "widgets/banner.h"
#include "widgets/channels_list.h"

#include <QAbstractButton>
#include <QAction>
#include <QDialog>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QSpinBox>
#include <QTabWidget>
#include <QTreeWidget>

#include <map>

using namespace tonvex;

namespace {

using Text_Map = std::map<std::string, std::string>;
using Entry_List = std::vector<std::pair<std::string, QPointer<QAction>>>;

void Gather(const QMenu& menu, const std::string& path, Entry_List& all) {
    emit const_cast<QMenu&>(menu).aboutToShow();
    for (QAction* action : menu.actions()) {
        const std::string name = path + "/" + action->text().remove('&').toStdString();
        if (action->menu() != nullptr)
            Gather(*action->menu(), name, all);
        else if (!action->isSeparator())
            all.emplace_back(name, action);
    }
}

/// A program with a song of one channel, whose user closes what opens and stops what starts.
struct Walk : Program {
    Walk() {
        session->channels->Store(0).AddNewEvent(0.1, NoteData{60, 100, 1.0});
        session->channels->Store(0).AddNewEvent(1.0, NoteData{62, 100, 30.0});
        session->hub->Message(nullptr, MSG_SET_PAN, Channel(0).ChannelID, std::int32_t{70});
        session->hub->Message(nullptr, MSG_SONG_POSITION, 0.5);
        for (const char* question : {"Delete this channel ?", "Clear this channel events ?"})
            dialogs.answers[question] = true;
        QObject::connect(&janitor, &QTimer::timeout, window.get(), [this] { Look_After(); });
        janitor.start(3);
    }
    // The next program takes the text's size from the application.
    ~Walk() { theme.Set_Text_Scale(1.0); }
    Walk(const Walk&) = delete;
    Walk& operator=(const Walk&) = delete;
    void Look_After() {
        const Transport_State& state = session->transport;
        if (state.Song_Runs())
            seen["run"] = state.Recording ? "record" : "play";
        if (stopsRuns)
            window->Recorder().Button_Stop();
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget == window.get() || !widget->isVisible())
                continue;
            seen["window"] = widget->objectName().toStdString() + widget->windowTitle().toStdString();
            widget->close();
        }
    }
    Text_Map State() {
        const GlobalChannel& row = Channel(0);
        const Practice_Mode& practice = window->Recorder().Practice();
        const auto* tabs = window->findChild<QTabWidget*>();
        Text_Map state = seen;
        for (const auto* pane : window->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
            if (pane->inherits("QDockWidget") || pane->inherits("QToolBar"))
                state["panes"] += pane->isHidden() ? '-' : '+';
        state["events"] = "at ";
        const ChannelClass& notes = session->channels->Store(0);
        for (std::int32_t i = notes.FirstEvent(); i >= 0; i = notes.Get_NextEventI(i))
            state["events"] += std::to_string(notes.ReadEvent(i)->StartTime).substr(0, 3) + " ";
        for (const auto& [name, value] : std::initializer_list<std::pair<const char*, int>>{
                 {"channels", session->channels->Count_Channels()},
                 {"volume", row.Volume},
                 {"pan", row.Pan},
                 {"mute", row.Mute},
                 {"solo", row.Solo},
                 {"metronome", session->options.Metronome},
                 {"overwrite", session->options.Overwrite},
                 {"wait", session->options.Global_Rec_WaitForKey},
                 {"speed", session->options.RecSpeedPercent},
                 {"at speed", session->options.PlayAtRecSpeed},
                 {"at", static_cast<int>(session->transport.PlayPosition * 100)},
                 {"keys", practice.Keys()},
                 {"practice", practice.Plain()},
                 {"tuning", session->layout->KeyboardTuning},
                 {"match", session->settings.Keyboard_Match_SongKey},
                 {"names", session->notes.Global_Notation},
                 {"key", session->creator.SongKey + 100 * session->creator.SongMode},
                 {"help", session->settings.Global_ShowHelpOnStartUp},
                 {"look", static_cast<int>(theme.Current())},
                 {"tab", tabs->currentIndex()},
                 {"marks", session->marks.Mark_Count()},
                 {"told", static_cast<int>(dialogs.shown.size() + dialogs.asked.size())},
                 {"banner", window->findChild<Banner*>()->isVisible()},
                 {"written", std::filesystem::exists(dialogs.fileToSave)}})
            state[name] = std::to_string(value);
        state["layout"] = session->layout->KeyboardFileName;
        state["file"] = session->project.Path.filename().string();
        state["focus"] = QString(Focus()->metaObject()->className()).remove("tonvex::").toStdString();
        return state;
    }
    /// What has become different by an entry, as "name value; name value".
    std::string Difference(QAction& action) {
        window->activateWindow();
        if (!QTest::qWaitForWindowActive(window.get()))
            qFatal("the window is not active");
        QTest::qWait(50); // the record mode is not changed faster
        seen.clear();
        const Text_Map before = State();
        const bool checked = action.isChecked();
        action.trigger();
        QTest::qWait(25);
        std::string text = action.isChecked() == checked ? "" : "checked";
        for (const auto& [name, value] : State())
            if (const auto old = before.find(name); old == before.end() || old->second != value)
                text += (text.empty() ? "" : "; ") + name + " " + value;
        return text;
    }
    Entry_List Entries() const {
        Entry_List all;
        for (QAction* action : window->menuBar()->actions())
            Gather(*action->menu(), action->text().remove('&').toStdString(), all);
        return all;
    }
    QAction& Entry(const char* text) const {
        for (QAction* action : window->findChildren<QAction*>())
            if (action->menu() == nullptr && action->text() == QLatin1String(text))
                return *action;
        qFatal("no %s", text);
    }

    QTimer janitor;
    bool stopsRuns = true;
    Text_Map seen;
};

} // namespace

class Menu_Walk_Test : public QObject {
    Q_OBJECT
private slots:
    void Every_Entry_Does_Its_Job();
    void Every_Command_Survives_data();
    void Every_Command_Survives();
    void Every_Function_Runs_By_Its_Key();
    void Entries_And_Tips_Show_The_Keys_In_Force();
    void Mnemonics_Are_Not_Shared();
};

void Menu_Walk_Test::Every_Entry_Does_Its_Job() {
    // Each menu on a song of its own, in its order. What is not told here changes or shows something.
    const Text_Map expected = {
        // as it is already, or nothing to do
        {"Edit/Undo", "off"},
        {"Edit/Redo", "off"},
        {"Record/Rewind 5 seconds", ""},
        {"Windows/Video tutorials", "off"},
        {"Channel/Pan map", ""},
        {"Project/Major key/C Major", ""},
        {"Record/Stop recording/playing", ""},
        {"Record/Record mode: blend", ""},
        {"Record/Record speed/100 %", ""},
        {"Record/Record speed/Decrease Rec speed 10 %", ""},
        {"Marks/Go to mark", ""},
        {"Marks/Set mark start at current play position", ""},
        {"Marks/Set mark end at current play position", ""},
        {"Marks/Unselect mark (select none)", ""},
        {"Options/Keyboard Tuning/C", ""},
        {"Options/Note names/C C# D D# E F F# G G# A A# B", ""},
        {"Options/Clear all channels status (Solo/Muted)", ""},
        {"Options/Appearance/Follow desktop", ""},
        {"Options/Appearance/Size 100 %", ""},
        // what has no look of its own
        {"File/Save", "file a.tvx; written 1"},
        {"File/Save as...", "file b.tvx; written 1"},
        {"File/Properties...", "focus frmMain; window frmPropertiesProperties"},
        {"Edit/Add new channel", "channels 2"},
        {"Edit/Delete channel", "channels 1; told 1"},
        {"Edit/Clear channel events", "events at ; told 2"},
        {"Channel/Align channel events", "events at 0.0 1.0 "},
        {"Channel/Move channel pan 10% right", "pan 76"},
        {"Channel/Center channel pan", "pan 64"},
        {"Project/Minor key/A Minor", "checked; key 109; tuning 0"},
        {"Record/Record", "run record"},
        {"Record/Go to end of song", "at 3100"},
    };
    std::size_t told = 0;
    std::size_t menus = 1;
    for (std::size_t n = 0; n < menus; ++n) {
        Walk p;
        menus = static_cast<std::size_t>(p.window->menuBar()->actions().size());
        Entry_List entries;
        const QAction* menu = p.window->menuBar()->actions().at(static_cast<qsizetype>(n));
        Gather(*menu->menu(), menu->text().remove('&').toStdString(), entries);
        for (const auto& [name, action] : entries) {
            if (name == "File/Exit")
                continue;
            const bool midi = name.find("idi") != std::string::npos;
            p.dialogs.fileToSave = (p.home / (midi                        ? "a.mid"
                                              : name == "File/Save as..." ? "b.tvx"
                                                                          : "a.tvx"))
                                       .string();
            p.dialogs.fileToOpen = p.dialogs.fileToSave;
            const std::string is = action->isEnabled() ? p.Difference(*action) : "off";
            const auto found = expected.find(name);
            const bool right = found == expected.end() ? !is.empty() && is != "off" : found->second == is;
            QVERIFY2(right, (name + ": " + is).c_str());
            told += found == expected.end() ? 0U : 1U;
        }
    }
    QCOMPARE(told, expected.size());
}

void Menu_Walk_Test::Every_Command_Survives_data() {
    QTest::addColumn<int>("refusals");
    // patch, output, five effects, two maps, align, mute and solo twice, five of volume and pan, delete,
    // rename, clear, select, record, computer keys
    QTest::newRow("no channel") << 25;
    QTest::newRow("during a run") << 0;
    QTest::newRow("no font, no device") << 0;
}

void Menu_Walk_Test::Every_Command_Survives() {
    QFETCH(int, refusals);
    const QByteArray where = QTest::currentDataTag();
    Walk p;
    const auto clear = [&p] { p.session->hub->Message(nullptr, MSG_DELETE_CHANNEL, p.Channel(0).ChannelID); };
    if (where.startsWith("no font")) {
        p.session->fonts->fallbackFonts.clear();
        p.session->fonts->CurList.clear();
        p.window->Reopen_Output();
        QVERIFY(!p.session->fontsLoaded);
        p.sound.openError = "nothing there";
        p.window->Reopen_Output();
        QVERIFY(!p.sound.status.open);
    }
    int refused = 0;
    const auto walk = [&] {
        for (const auto& [name, action] : p.Entries()) {
            // Leaving the program has a test of its own; one entry may take another away.
            if (action == nullptr || !action->isEnabled() || name == "File/Exit")
                continue;
            if (where == "no channel" && p.session->channels->Count_Channels() > 0)
                clear();
            p.dialogs.shown.clear();
            action->trigger();
            QTest::qWait(1);
            p.Look_After();
            refused += !p.dialogs.shown.empty() && p.dialogs.shown[0].text == "You need to select a channel";
        }
        QList<QPointer<QAbstractButton>> buttons;
        for (QAbstractButton* button : p.window->findChildren<QAbstractButton*>())
            buttons << button;
        for (const auto& button : buttons)
            if (button != nullptr && button->isEnabled() && button->isVisible())
                button->click();
        p.Look_After();
    };
    if (where == "during a run") {
        p.stopsRuns = false;
        QTimer::singleShot(20, this, [&] {
            walk();
            // What a key does not do then its entry does not either.
            const Function_Key_Table& table = p.session->functionKeys;
            for (const auto& [name, action] : p.Entries()) {
                const int row = table.Row_Of_Function(action->data().toString().toStdString());
                if (row >= 0)
                    QVERIFY2(action->isEnabled() ==
                                 (table.FunctionKeys[static_cast<std::size_t>(row)].WhileRunning != 0),
                             name.c_str());
            }
            p.stopsRuns = true;
        });
        p.window->Recorder().Button_Rec();
    } else {
        walk();
    }
    QCOMPARE(refused, refusals);
    QTRY_VERIFY(!p.session->transport.Song_Runs() && !p.session->recorder->IsRunning());
}

void Menu_Walk_Test::Every_Function_Runs_By_Its_Key() {
    Walk p;
    p.janitor.stop();
    const Function_Key_Table& table = p.session->functionKeys;
    std::string ran;
    int byKey = 0;
    p.Entry("&Keyboard Access...").trigger();
    auto* access = p.window->findChild<QDialog*>(QStringLiteral("frmKeyAccess"));
    auto* list = access->findChild<QTreeWidget*>();
    for (int row = 0; row < static_cast<int>(Function_Key_Table::FILLED); ++row) {
        const FunctionKey& function = table.FunctionKeys[static_cast<std::size_t>(row)];
        QVERIFY2(p.session->keyRunner.Has_Action(function.InternalName), function.Name.c_str());
        p.session->keyRunner.Set_Action(function.InternalName,
                                        [&ran, &function] { ran = function.InternalName; });
        list->setCurrentItem(list->topLevelItem(row));
        access->findChild<QAbstractButton*>(QStringLiteral("Command3"))->click();
        QCOMPARE(std::exchange(ran, {}), function.InternalName);
        if (table.Row_Of_Key(function.KeyCode, function.Modifier) != row)
            continue;
        const QKeyCombination keys = Shown_Key(function.KeyCode, function.Modifier)[0];
        p.session->keyRunner.KeysHoldTime = 0;
        QTest::keyClick(p.window.get(), keys.key(), keys.keyboardModifiers());
        QTRY_COMPARE(ran, function.InternalName);
        ++byKey;
    }
    QCOMPARE(byKey, 45); // ten have none, one shares the key of another
    // For a second after a dialog no key runs; one in front of the window keeps it waiting.
    ran.clear();
    access->reject();
    p.window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(p.window.get()));
    QTest::keyClick(p.Focus(), Qt::Key_M);
    QTest::qWait(30);
    QCOMPARE(ran, std::string());
    p.session->keyRunner.KeysHoldTime = 0;
    QMenu menu;
    menu.popup(p.window->mapToGlobal(QPoint(10, 10)));
    p.session->keyRunner.Note_Key('S', 0);
    QTest::qWait(30);
    QCOMPARE(ran, std::string());
    menu.close();
    QTRY_COMPARE(ran, std::string("Select Channel"));
    // In a menu a letter is a mnemonic, whatever function has it.
    QTest::keyClick(p.window.get(), Qt::Key_O, Qt::AltModifier);
    QTRY_VERIFY(QApplication::activePopupWidget() != nullptr);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_L);
    QTRY_COMPARE(ran, std::string("Clear all channels mute/solo status"));
    p.window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(p.window.get()));
    // Alt and a letter may be a function's, menu or not.
    QVERIFY(p.session->functionKeys.Assign_Key(table.Row_Of_Function("Record"), 'F', ALT_KEY));
    p.Key(Qt::Key_F, Qt::AltModifier);
    QCOMPARE(ran, std::string("Record"));
    // A held key goes on with what goes in steps; all else runs once.
    for (const auto& [key, again] : {std::pair{Qt::Key_L, "Move channel Pan 10% Left"}, {Qt::Key_M, ""}}) {
        for (int press = 0; press < 2; ++press) {
            ran.clear();
            QTest::keyPress(p.Focus(), key);
            QTest::qWait(20);
        }
        QTest::keyRelease(p.Focus(), key);
        QCOMPARE(ran, std::string(again));
    }
    ran = "Select Channel";
    // A field takes its letters and its Enter.
    p.window->Channels().Rename(p.window->Selected_Channel());
    p.Key(Qt::Key_M);
    QCOMPARE(ran, std::string("Select Channel"));
    p.Key(Qt::Key_Return);
    QCOMPARE(ran, std::string("Select Channel"));
    QCOMPARE(p.Channel(0).ChannelName, std::string("m"));
    p.window->Recorder().findChild<QSpinBox*>()->setFocus();
    p.Key(Qt::Key_Return);
    QCOMPARE(ran, std::string("Select Channel"));
}

void Menu_Walk_Test::Entries_And_Tips_Show_The_Keys_In_Force() {
    const Walk p;
    QCOMPARE(p.Entry("&Record").shortcut(), QKeySequence(Qt::CTRL | Qt::Key_R));
    QVERIFY(p.Entry("C&lear all channels status (Solo/Muted)").shortcut().isEmpty()); // another has its R
    QCOMPARE(p.Entry("&Save").shortcut(), QKeySequence(Qt::CTRL | Qt::Key_S));
    Function_Key_Table& table = const_cast<Walk&>(p).session->functionKeys;
    QVERIFY(table.Assign_Key(table.Row_Of_Function("Record"), 'S', CONTROL_KEY));
    p.Entry("&Keyboard Access...").trigger();
    QMetaObject::invokeMethod(p.window->findChild<QDialog*>(QStringLiteral("frmKeyAccess")), "keysChanged");
    QCOMPARE(p.Entry("&Record").shortcut(), QKeySequence(Qt::CTRL | Qt::Key_S));
    QVERIFY(p.Entry("&Save").shortcut().isEmpty()); // the table's key is nobody else's
    const auto buttons = p.window->findChildren<QAbstractButton*>();
    QVERIFY(std::any_of(buttons.begin(), buttons.end(), [](const QAbstractButton* button) {
        return button->toolTip() == QLatin1String("Record (Ctrl+S)");
    }));
}

void Menu_Walk_Test::Mnemonics_Are_Not_Shared() {
    const Walk p;
    const auto check = [](const QString& place, QStringList letters) {
        letters.removeAll(QString());
        const QString all = letters.join(' ');
        QVERIFY2(letters.removeDuplicates() == 0, qPrintable(place + ": " + all));
    };
    const auto letter = [](const QAction* action) {
        const QString text = action->text();
        return text.contains('&') ? text.mid(text.indexOf('&') + 1, 1).toLower() : QString();
    };
    for (const QMenu* menu : p.window->menuBar()->findChildren<QMenu*>()) {
        QStringList letters;
        for (const QAction* action : menu->actions())
            letters << letter(action);
        check(menu->title(), letters);
    }
    // What a tab shows shares the Alt keys with the menu bar.
    const auto* tabs = p.window->findChild<QTabWidget*>();
    for (int i = 0; i < tabs->count(); ++i) {
        QStringList letters = Mnemonics(*tabs->widget(i));
        for (const QAction* action : p.window->menuBar()->actions())
            letters << letter(action);
        check(tabs->tabText(i), letters);
    }
}

QTEST_MAIN(Menu_Walk_Test)
#include "menu_walk_test.moc"
