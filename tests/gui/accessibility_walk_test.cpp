// Every window of the program as assistive tools see it: no control without a name and a role; and at larger
// sizes: no caption cut off. With TONVEX_SHOTS=folder the windows are saved there as pictures, in both
// palettes at 100, 200 and 300 %.

#include "app/windows/frm_about.h"
#include "app/windows/frm_help.h"
#include "app/windows/frm_key_access.h"
#include "app/windows/frm_mouse_status.h"
#include "app/windows/frm_recovery.h"
#include "app/windows/frm_start_up.h"
#include "audio/windows/frm_inst_list.h"
#include "audio/windows/frm_sf2_error.h"
#include "editors/windows/frm_ev_ed_set_vol.h"
#include "editors/windows/frm_ev_ed_time_pos_properties.h"
#include "editors/windows/frm_ev_ed_view.h"
#include "editors/windows/frm_sel_channels_view.h"
#include "editors/windows/frm_undo_list.h"
#include "engine/windows/frm_metronome_setup.h"
#include "engine/windows/frm_recorder.h"
#include "input/windows/frm_keyboard_setup.h"
#include "input/windows/frm_piano_layout.h"
#include "input/windows/frm_qchord_config.h"
#include "input/windows/frm_rec_piano_layout.h"
#include "input/windows/frm_setup_midi_device.h"
#include "project/windows/frm_channel_wizard.h"
#include "project/windows/frm_export_audio.h"
#include "project/windows/frm_new_file.h"
#include "project/windows/frm_properties.h"
#include "project/windows/frm_save_as_template.h"
#include "song/windows/frm_marks.h"
#include "song/windows/frm_set_pitch.h"
#include "song/windows/frm_set_speed.h"
#include "song/windows/frm_tempo.h"
#include "song/windows/mark_selection.h"
#include "support/window_program.h"
#include "support/window_world.h"
#include "widgets/frm_channel_properties.h"
#include "widgets/frm_fx_config.h"
#include "widgets/frm_patch_selection_win.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QListView>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QTabWidget>

#include <functional>
#include <map>
#include <set>

using namespace tonvex;

namespace {

struct Walked_Program : Program {
    Left_Songs left{home / "left"};
    Event_Display display{*session->channels};
};
using Maker = std::function<QWidget*(Walked_Program& p)>;
template <typename Window, typename... Arguments>
QWidget* Make(Arguments&&... arguments) {
    return new Window(std::forward<Arguments>(arguments)...);
}

template <typename Window>
QWidget* Of_Session(Walked_Program& p) {
    return new Window(*p.session, p.theme);
}
template <typename Window>
QWidget* Of_Channel(Walked_Program& p) {
    return new Window(*p.session, p.theme, FIRST_ID);
}

/// By header. What is part of the main window has none: it is walked there.
const std::map<QString, Maker> WINDOWS = {
    {"app/windows/frm_about.h", [](Walked_Program& p) { return Make<frmAbout>(p.theme, nullptr); }},
    {"app/windows/frm_help.h",
     [](Walked_Program& p) { return Make<frmHelp>(p.theme, TONVEX_SOURCE_DATA "/help"); }},
    {"app/windows/frm_main.h", nullptr},
    {"app/windows/frm_mouse_status.h", [](Walked_Program& p) { return Make<frmMouseStatus>(p.theme); }},
    {"app/windows/frm_recovery.h",
     [](Walked_Program& p) { return Make<frmRecovery>(p.left, p.dialogs, p.theme); }},
    {"app/windows/frm_start_up.h", [](Walked_Program& p) { return Make<frmStartUp>(p.theme); }},
    {"audio/windows/frm_inst_list.h", Of_Session<frmInstList>},
    {"audio/windows/frm_sf2_error.h", Of_Session<frmSF2Error>},
    {"editors/windows/frm_ev_ed_set_vol.h",
     [](Walked_Program& p) { return Make<frmEvEd_SetVol>(p.theme, 80); }},
    {"editors/windows/frm_ev_ed_time_pos_properties.h",
     [](Walked_Program& p) { return Make<frmEvEd_TimePosProperties>(p.dialogs, p.theme); }},
    {"editors/windows/frm_ev_ed_view.h",
     [](Walked_Program& p) { return Make<frmEvEd_View>(p.theme, Roll_Options{}, p.session->notes); }},
    {"editors/windows/frm_events_editor.h", nullptr},
    {"editors/windows/frm_sel_channels_view.h",
     [](Walked_Program& p) { return Make<frmSelChannelsView>(*p.session, p.theme, p.display); }},
    {"editors/windows/frm_undo_list.h", Of_Session<frmUndoList>},
    {"engine/windows/frm_metronome_setup.h", Of_Session<frmMetronomeSetup>},
    {"engine/windows/frm_recorder.h", nullptr},
    {"input/windows/frm_keyboard_setup.h", nullptr},
    {"input/windows/frm_piano_layout.h", Of_Channel<frmPianoLayout>},
    {"input/windows/frm_qchord_config.h", Of_Channel<frmQChordConfig>},
    {"input/windows/frm_rec_piano_layout.h", nullptr},
    {"input/windows/frm_setup_midi_device.h", Of_Session<frmSetUpMidiDevice>},
    {"project/windows/frm_channel_wizard.h",
     [](Walked_Program& p) {
         return Make<frmChannelWizard>(*p.session, p.theme, p.window->Recorder().Practice());
     }},
    {"project/windows/frm_export_audio.h",
     [](Walked_Program& p) { return Make<frmExportAudio>(Audio_Format{}, p.theme); }},
    {"project/windows/frm_new_file.h",
     [](Walked_Program& p) {
         return Make<frmNewFile>(p.dialogs, p.theme, p.home, [](const auto&) { return true; });
     }},
    {"project/windows/frm_save_as_template.h",
     [](Walked_Program& p) {
         return Make<frmSaveAsTemplate>(p.dialogs, p.theme, p.home, [](const auto&) { return true; });
     }},
    {"song/windows/frm_marks.h",
     [](Walked_Program& p) {
         return Make<frmMarks>(*p.session, p.theme, *p.window->findChild<Mark_Selection*>());
     }},
    {"song/windows/frm_set_speed.h", Of_Session<frmSetSpeed>},
    {"song/windows/frm_tempo.h", Of_Session<frmTempo>},
    {"widgets/frm_channel_properties.h", nullptr},
    {"widgets/frm_fx_config.h",
     [](Walked_Program& p) {
         auto* window = new frmFX_Config(*p.session, p.theme);
         window->Show_Effect(FIRST_ID, Effect_Kind::Reverb);
         return window;
     }},
    {"app/windows/frm_key_access.h", Of_Session<frmKeyAccess>},
    {"project/windows/frm_properties.h", Of_Session<frmProperties>},
    {"song/windows/frm_set_pitch.h", Of_Session<frmSetPitch>},
    {"widgets/frm_patch_selection_win.h",
     [](Walked_Program& p) { return Make<frmPatchSelectionWin>(*p.session, FIRST_ID, nullptr); }},
};

/// Goes when the test does, unless it has gone by itself.
struct Made_Window {
    explicit Made_Window(QWidget* made) : window(made) {}
    ~Made_Window() { delete window.data(); }
    Made_Window(const Made_Window&) = delete;
    Made_Window& operator=(const Made_Window&) = delete;
    QPointer<QWidget> window;
};
std::unique_ptr<Made_Window> Made(const QString& header, Walked_Program& p) {
    return std::make_unique<Made_Window>(WINDOWS.at(header) ? WINDOWS.at(header)(p) : nullptr);
}

/// Roles of what is there for layout or for reading alone.
bool Needs_No_Name(QAccessible::Role role) {
    static const std::set<QAccessible::Role> silent = {
        QAccessible::Client,      QAccessible::Pane,     QAccessible::Grouping,   QAccessible::Splitter,
        QAccessible::LayeredPane, QAccessible::Window,   QAccessible::Separator,  QAccessible::ToolBar,
        QAccessible::MenuBar,     QAccessible::Section,  QAccessible::StatusBar,  QAccessible::Border,
        QAccessible::StaticText,  QAccessible::Row,      QAccessible::Column,     QAccessible::Cell,
        QAccessible::TreeItem,    QAccessible::ListItem, QAccessible::Whitespace, QAccessible::PopupMenu,
        QAccessible::Grip};
    return silent.count(role) > 0;
}

class Walk {
public:
    explicit Walk(const QString& windowName) : window(windowName) {}
    QStringList faults;
    int controls = 0;

    void Through(QAccessibleInterface* face, const QString& road, bool insideControl) {
        if (face == nullptr || !face->isValid() || face->state().invisible)
            return;
        const QAccessible::Role role = face->role();
        const auto* object = face->object();
        const QString name = face->text(QAccessible::Name);
        const QString here = road + '/' + (object != nullptr ? object->metaObject()->className() : "?") +
                             (name.isEmpty() ? QString() : QStringLiteral(" \"%1\"").arg(name));
        const auto* widget = qobject_cast<const QWidget*>(object);
        const bool focusable = widget != nullptr && (widget->focusPolicy() & Qt::TabFocus) != 0 &&
                               widget->focusProxy() == nullptr;
        const bool hasRole = role != QAccessible::NoRole && (!focusable || role != QAccessible::Client);
        if (!hasRole)
            faults << here + ": no role";
        // The field inside a spin box or a combo box is told with it.
        if (!insideControl && (focusable || !Needs_No_Name(role))) {
            ++controls;
            if (name.trimmed().isEmpty())
                faults << here + QStringLiteral(": no name (role %1)").arg(role);
        }
        const bool holdsParts = role == QAccessible::SpinBox || role == QAccessible::ComboBox;
        for (int i = 0; i < face->childCount(); ++i)
            Through(face->child(i), here, insideControl || holdsParts);
    }
    QString window;
};

/// Fields that stand alone in their window or cannot be written in, and buttons with another way.
const QSet<QString> WITHOUT_A_LETTER = {"frm_help search",           "frm_help contents",
                                        "frm_key_access Text1",      "frm_key_access Text3",
                                        "frm_undo_list List1",       "frm_metronome_setup Command3",
                                        "frm_channel_wizard cancel", "frm_new_file List1"};

/// Named fields that no label's letter leads to and named buttons without one; help has a key of its own.
QStringList Hard_To_Reach(const QWidget& window, const QString& header) {
    QList<QWidget*> buddies;
    for (const auto* label : window.findChildren<QLabel*>())
        buddies << label->buddy();
    QStringList hard;
    for (auto* widget : window.findChildren<QWidget*>()) {
        const QString name = widget->objectName();
        const auto* button = qobject_cast<QPushButton*>(widget);
        const bool isField = widget->inherits("QListWidget") || widget->inherits("QComboBox") ||
                             widget->inherits("QLineEdit") || widget->inherits("QSpinBox");
        if ((!isField && button == nullptr) || !widget->isVisible() || name.isEmpty() || name == "help" ||
            name.startsWith("qt_") || WITHOUT_A_LETTER.contains(QFileInfo(header).baseName() + ' ' + name))
            continue;
        if (button != nullptr ? !button->text().contains('&') && button->shortcut().isEmpty()
                              : !buddies.contains(widget))
            hard << name;
    }
    return hard;
}

/// Labels, buttons and rows of lists that have less room than their text.
QStringList Cut_Captions(const QWidget& window) {
    QStringList cut;
    const auto look = [&cut](const QWidget& widget, const QString& text, int wanted) {
        if (widget.isVisible() && !text.isEmpty() && widget.width() < wanted)
            cut << QStringLiteral("\"%1\" has %2 of %3").arg(text).arg(widget.width()).arg(wanted);
    };
    for (const auto* label : window.findChildren<QLabel*>())
        if (!label->wordWrap() && label->sizePolicy().horizontalPolicy() != QSizePolicy::Ignored)
            look(*label, label->text(), label->minimumSizeHint().width());
    for (const auto* button : window.findChildren<QAbstractButton*>())
        look(*button, button->text(), button->minimumSizeHint().width());
    for (const auto* list : window.findChildren<QListView*>())
        if (list->isVisible() && list->model()->rowCount() > 1 &&
            list->visualRect(list->model()->index(0, 0))
                .intersects(list->visualRect(list->model()->index(1, 0))))
            cut << "rows of " + list->accessibleName();
    return cut;
}

} // namespace

class Accessibility_Walk_Test : public QObject {
    Q_OBJECT
private slots:
    void Every_Window_Is_Walked();
    void Windows_Name_Their_Controls_data();
    void Windows_Name_Their_Controls();
    void The_Main_Window_Names_Its_Controls();
    void No_Caption_Is_Cut_data() { Windows_Name_Their_Controls_data(); }
    void No_Caption_Is_Cut();
    void The_Main_Window_Fits_Small_Screens();
};

void Accessibility_Walk_Test::Every_Window_Is_Walked() {
    const QDir source(QStringLiteral(TONVEX_SOURCE_DATA "/.."));
    int found = 0;
    for (const QString& folder : source.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QString place =
            folder == QLatin1String("widgets") ? folder : folder + QStringLiteral("/windows");
        for (const QString& header : QDir(source.filePath(place)).entryList({"frm_*.h"}, QDir::Files)) {
            ++found;
            QVERIFY2(WINDOWS.count(place + '/' + header) == 1,
                     qPrintable(place + '/' + header + " is not in the table above"));
        }
    }
    QVERIFY(found >= static_cast<int>(WINDOWS.size()));
}

void Accessibility_Walk_Test::Windows_Name_Their_Controls_data() {
    QTest::addColumn<QString>("header");
    for (const auto& [header, maker] : WINDOWS)
        if (maker)
            QTest::newRow(qPrintable(header)) << header;
}

void Accessibility_Walk_Test::Windows_Name_Their_Controls() {
    QFETCH(QString, header);
    Walked_Program p;
    const auto made = Made(header, p);
    QWidget* window = made->window;
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window));
    Walk walk(header);
    walk.Through(QAccessible::queryAccessibleInterface(window), {}, false);
    QVERIFY2(walk.faults.isEmpty(), qPrintable(walk.faults.join('\n')));
    QVERIFY2(!window->windowTitle().isEmpty(), "no title");
    // A 1440 x 900 screen at 200 % holds it, with its frame.
    const QSize least = window->minimumSizeHint().expandedTo(window->minimumSize());
    QVERIFY2(least.width() <= 710 && least.height() <= 425,
             qPrintable(QStringLiteral("at least %1 x %2").arg(least.width()).arg(least.height())));
    QStringList letters = Mnemonics(*window);
    const QString all = letters.join(' ');
    QVERIFY2(letters.removeDuplicates() == 0, qPrintable("one letter for two: " + all));
    const QStringList hard = Hard_To_Reach(*window, header);
    QVERIFY2(hard.isEmpty(), qPrintable(hard.join(", ")));
}

void Accessibility_Walk_Test::The_Main_Window_Names_Its_Controls() {
    Program p;
    auto* tabs = p.window->findChild<QTabWidget*>();
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        QApplication::processEvents();
        Walk walk(tabs->tabText(tab));
        walk.Through(QAccessible::queryAccessibleInterface(p.window.get()), {}, false);
        QVERIFY2(walk.faults.isEmpty(), qPrintable(walk.faults.join('\n')));
        QVERIFY2(walk.controls > 40, qPrintable(QString::number(walk.controls)));
    }
    for (QMenu* menu : p.window->menuBar()->findChildren<QMenu*>()) {
        menu->popup({});
        Walk walk(menu->title());
        walk.Through(QAccessible::queryAccessibleInterface(menu), {}, false);
        menu->close();
        QVERIFY2(walk.faults.isEmpty(), qPrintable(walk.faults.join('\n')));
    }
}

void Accessibility_Walk_Test::No_Caption_Is_Cut() {
    QFETCH(QString, header);
    const QString shots = qEnvironmentVariable("TONVEX_SHOTS");
    for (const Appearance appearance : {Appearance::Light, Appearance::Dark}) {
        for (const int percent : {100, 200, 300}) {
            if (shots.isEmpty() && (appearance == Appearance::Dark || percent == 200))
                continue; // dark is as wide, 200 % between the others
            Walked_Program p;
            p.window->hide(); // it is looked at by the road of a newcomer
            p.theme.Set_Appearance(appearance);
            p.theme.Set_Text_Scale(percent / 100.0);
            const auto made = Made(header, p);
            QWidget& window = *made->window;
            window.show();
            QVERIFY(QTest::qWaitForWindowExposed(&window));
            if (!shots.isEmpty())
                window.grab().save(QStringLiteral("%1/%2-%3-%4.png")
                                       .arg(shots, QFileInfo(header).baseName(),
                                            appearance == Appearance::Dark ? "dark" : "light")
                                       .arg(percent));
            const QStringList cut = Cut_Captions(window);
            p.theme.Set_Text_Scale(1.0); // the next theme takes the application's font for the desktop's
            QVERIFY2(cut.isEmpty(), qPrintable(QStringLiteral("%1 %: ").arg(percent) + cut.join(", ")));
        }
    }
}

/// At 200 % on 1440 x 900, at 300 % on 3840 x 2160.
void Accessibility_Walk_Test::The_Main_Window_Fits_Small_Screens() {
    Program p;
    QStringList parts;
    for (const auto* widget : p.window->findChildren<QWidget*>()) {
        const QSize least = widget->minimumSizeHint();
        if (least.width() > 360 || least.height() > 200)
            parts << QStringLiteral("%1 %2 x %3")
                         .arg(widget->metaObject()->className())
                         .arg(least.width())
                         .arg(least.height());
    }
    const QSize least = p.window->minimumSizeHint();
    QVERIFY2(
        least.width() <= 720 && least.height() <= 450,
        qPrintable(QStringLiteral("%1 x %2: ").arg(least.width()).arg(least.height()) + parts.join(", ")));
}

QTEST_MAIN(Accessibility_Walk_Test)
#include "accessibility_walk_test.moc"
