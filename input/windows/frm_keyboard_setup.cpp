#include "input/windows/frm_keyboard_setup.h"

#include "input/windows/frm_piano_layout.h"
#include "input/windows/frm_qchord_config.h"
#include "input/windows/key_texts.h"
#include "input/windows/keyboard_view.h"
#include "input/windows/layout_notice.h"
#include "project/template_channel.h"
#include "widgets/segment_selector.h"

#include <QCheckBox>
#include <QComboBox>
#include <QInputDialog>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QPushButton>

#include <algorithm>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

constexpr int CODE_NOTE = 0;
constexpr int CODE_QCHORD = 1;
constexpr int CODE_DISABLED = 4;
constexpr int QUESTION_WIDTH = 360;

} // namespace

frmKeyboardSetup::frmKeyboardSetup(Session& owner, const Theme& look, Practice_Mode& practiceMode,
                                   QWidget* parent)
    : QWidget(parent), session(owner), theme(look), practice(practiceMode), link(session.observers, *this) {
    setAccessibleName(tr("Keyboard"));
    setWindowTitle(tr("Keyboard"));
    Make_Controls();
    Connect_Controls();
    session.keyboard->marks = this;
    UpdateLayout();
}

frmKeyboardSetup::~frmKeyboardSetup() {
    if (session.keyboard != nullptr && session.keyboard->marks == this)
        session.keyboard->marks = nullptr;
}

void frmKeyboardSetup::Connect_Controls() {
    connect(view, &Keyboard_View::currentChanged, this, &frmKeyboardSetup::Show_Key);
    connect(view, &Keyboard_View::configureAsked, this, &frmKeyboardSetup::Configure);
    connect(view, &Keyboard_View::menuAsked, this, &frmKeyboardSetup::Show_Menu);
    connect(configure, &QPushButton::clicked, this, [this] { Configure(view->Current()); });
    connect(functions, &QPushButton::clicked, this,
            [this] { Show_Menu(view->Current(), functions->mapToGlobal(QPoint(0, functions->height()))); });
    connect(Combo1, &QComboBox::textActivated, this, &frmKeyboardSetup::Load_Layout);
    connect(wbButton2, &QPushButton::clicked, this, &frmKeyboardSetup::wbButton2_Click);
    connect(wbButton3, &QPushButton::clicked, this, &frmKeyboardSetup::wbButton3_Click);
    connect(wbButton4, &QPushButton::clicked, this, &frmKeyboardSetup::wbButton4_Click);
    connect(Command3, &QPushButton::clicked, this, &frmKeyboardSetup::Command3_Click);
    connect(&practice, &Practice_Mode::plainChanged, this, &frmKeyboardSetup::Show_Practice);
    connect(tuning, &QComboBox::activated, this, &frmKeyboardSetup::mnuKeyboardTuning);
    connect(matchSongKey, &QCheckBox::clicked, this,
            [this](bool on) { session.settings.Keyboard_Match_SongKey = on; });
    connect(notesOctave, &Segment_Selector::chosenByUser, this, [this](int octave) {
        session.layout->NotesOctave = octave;
        Tell_Layout_Changed(session);
    });
    connect(chordsOctave, &Segment_Selector::chosenByUser, this, [this](int octave) {
        session.layout->QChordsOctave = octave;
        Tell_Layout_Changed(session);
    });
}

void frmKeyboardSetup::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), theme.Tokens().panel);
}

// ---- what is shown ----

void frmKeyboardSetup::UpdateLayout() {
    const auto signs = Keyboard_View::Signs();
    for (int key = 0; key < Keyboard_View::KEYS; ++key) {
        const QString& sign = signs[static_cast<std::size_t>(key)];
        Keyboard_View::Key_Face face = Face_Of_Key(*session.layout, session.notes, key, sign);
        face.sign = sign;
        view->Set_Face(key, face);
    }
    Refresh_Choices();
    Show_Key();
    Enable_Controls();
}

void frmKeyboardSetup::Refresh_Choices() {
    const KeyboardLayout& layout = *session.layout;
    Combo1->clear();
    for (const std::string& name : layout.Layout_Names())
        Combo1->addItem(QString::fromStdString(name));
    const QString current = QString::fromStdString(layout.KeyboardFileName);
    // A layout whose file is not there is in force all the same.
    if (!current.isEmpty() && Combo1->findText(current) < 0)
        Combo1->addItem(current);
    Combo1->setCurrentText(current);
    modified->setText(layout.KeyboardModified ? tr("• modified") : QString());
    for (int root = 0; root < tuning->count(); ++root)
        tuning->setItemText(root, QString::fromStdString(session.notes.RootName(root)));
    tuning->setCurrentIndex(layout.KeyboardTuning);
    matchSongKey->setChecked(session.settings.Keyboard_Match_SongKey);
    notesOctave->Show_Choice(layout.NotesOctave);
    chordsOctave->Show_Choice(layout.QChordsOctave);
}

void frmKeyboardSetup::Show_Key() {
    keyText->setText(view->Shown(view->Current()).told);
    Enable_Controls();
}

void frmKeyboardSetup::Enable_Controls() {
    const bool free = !session.transport.Song_Runs();
    const bool setable = free && KeyboardLayout::Is_Free_Key(view->Current());
    configure->setEnabled(setable);
    functions->setEnabled(setable);
    for (QWidget* control :
         std::initializer_list<QWidget*>{Combo1, wbButton2, wbButton3, wbButton4, Command3, tuning})
        control->setEnabled(free);
}

void frmKeyboardSetup::On_Run_Started(bool) {
    view->Clear_Pressed();
    Enable_Controls();
}

void frmKeyboardSetup::On_Run_Ended() {
    view->Clear_Pressed();
    Enable_Controls();
}

void frmKeyboardSetup::On_Key_Mark(int scanCode, bool pressed) {
    view->Set_Pressed(scanCode, pressed);
}

void frmKeyboardSetup::On_All_Marks_Off() {
    view->Clear_Pressed();
}

// ---- one key ----

template <typename Change>
void frmKeyboardSetup::Change_Layout(const Change& change) {
    practice.Hold();
    change();
    practice.Let_Go();
    Tell_Layout_Changed(session);
}

void frmKeyboardSetup::Configure(int key) {
    if (!KeyboardLayout::Is_Free_Key(key) || session.transport.Song_Runs() || editor != nullptr)
        return;
    view->Select(key);
    const KeyMapEntry& entry = session.layout->KeyMap[static_cast<std::size_t>(key)];
    if (entry.Enabled != 0 && entry.Kind == KEY_NOTE)
        Edit_Note(key);
    else if (entry.Enabled != 0 && entry.Kind == KEY_QCHORD)
        Edit_QChord(key);
    else
        Show_Menu(key, view->mapToGlobal(view->Key_Rect(key).center().toPoint()));
}

void frmKeyboardSetup::Open_Editor(QDialog* window) {
    editor = window;
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->open();
}

void frmKeyboardSetup::Edit_Note(int key) {
    const KeyboardLayout& layout = *session.layout;
    const auto row = static_cast<std::size_t>(layout.KeyMap[static_cast<std::size_t>(key)].Target);
    auto* window = new frmPianoLayout(session, theme, selectedChannel, this);
    window->SetMode(Piano_Selection::Mode::Note);
    window->Set_About(tr("The note of key %1").arg(view->Shown(key).sign));
    window->SetVolume(layout.KeyNoteTable[row].Vol);
    window->SetChord({layout.KeyNoteTable[row].Note});
    connect(window, &QDialog::accepted, this, [this, key] { PianoLayoutObj_Closed(key); });
    Open_Editor(window);
}

void frmKeyboardSetup::PianoLayoutObj_Closed(int key) {
    const auto* window = qobject_cast<frmPianoLayout*>(editor);
    if (window == nullptr || window->GetChord().empty())
        return;
    const KeyboardLayout& layout = *session.layout;
    NoteData note =
        layout.KeyNoteTable[static_cast<std::size_t>(layout.KeyMap[static_cast<std::size_t>(key)].Target)];
    note.Note = static_cast<std::uint8_t>(window->GetChord().front());
    note.Vol = static_cast<std::uint8_t>(window->GetVolume());
    Change_Layout([this, key, &note] { session.layout->Set_Key_Note(key, note); });
}

void frmKeyboardSetup::Edit_QChord(int key) {
    const KeyboardLayout& layout = *session.layout;
    const auto row = static_cast<std::size_t>(layout.KeyMap[static_cast<std::size_t>(key)].Target);
    auto* window = new frmQChordConfig(session, theme, selectedChannel, this);
    window->Set_About(tr("The chord of key %1").arg(view->Shown(key).sign));
    window->Load_WorkStruct(layout.KeyQChordTable[row]);
    connect(window, &QDialog::accepted, this, [this, key] { frmQChordConfigOBJ_Closed(key); });
    Open_Editor(window);
}

void frmKeyboardSetup::frmQChordConfigOBJ_Closed(int key) {
    const auto* window = qobject_cast<frmQChordConfig*>(editor);
    if (window == nullptr)
        return;
    QChordData chord;
    window->Get_WorkStruct(chord);
    Change_Layout([this, key, &chord] { session.layout->Set_Key_QChord(key, chord); });
}

void frmKeyboardSetup::Show_Menu(int key, const QPoint& place) {
    if (!KeyboardLayout::Is_Free_Key(key) || session.transport.Song_Runs())
        return;
    const KeyMapEntry& entry = session.layout->KeyMap[static_cast<std::size_t>(key)];
    const bool on = entry.Enabled != 0;
    menu->clear();
    const auto add = [this, key](const QString& text, int code, bool current) {
        QAction* action =
            menu->addAction(text, this, [this, key, code] { OurMsgClass_MsgReceived(key, code); });
        action->setData(code);
        action->setCheckable(true);
        action->setChecked(current);
    };
    add(tr("&Note"), CODE_NOTE, on && entry.Kind == KEY_NOTE);
    add(tr("&QChord"), CODE_QCHORD, on && entry.Kind == KEY_QCHORD);
    add(tr("&Disabled"), CODE_DISABLED, !on);
    menu->addSeparator();
    QAction* open = menu->addAction(tr("&Configure..."), this, [this, key] { Configure(key); });
    open->setEnabled(on && (entry.Kind == KEY_NOTE || entry.Kind == KEY_QCHORD));
    menu->popup(place);
}

void frmKeyboardSetup::OurMsgClass_MsgReceived(int key, int menuCode) {
    if (session.transport.Song_Runs())
        return;
    Change_Layout([this, key, menuCode] { session.layout->Set_Key_Function(key, menuCode); });
}

// ---- layouts, practice ----

void frmKeyboardSetup::Load_Layout(const QString& name) {
    if (name.toStdString() == session.layout->KeyboardFileName)
        return;
    Change_Layout([this, &name] {
        session.layout->LoadKeyboardSettings(name.toStdString(), session.project.ProjectTempo);
    });
}

void frmKeyboardSetup::wbButton2_Click() {
    auto* question = new QInputDialog(this);
    question->setObjectName(QStringLiteral("newName"));
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setWindowTitle(tr("Save keyboard layout"));
    question->setLabelText(tr("Name of the layout:"));
    question->setTextValue(QString::fromStdString(session.layout->KeyboardFileName));
    question->resize(theme.Px(QUESTION_WIDTH), question->height());
    connect(question, &QInputDialog::textValueSelected, this, &frmKeyboardSetup::Save_Under);
    question->open();
}

void frmKeyboardSetup::Save_Under(const QString& name) {
    if (name.trimmed().isEmpty())
        return;
    (void)session.layout->SaveKeyboardSettings(name.trimmed().toStdString());
    Tell_Layout_Changed(session);
}

void frmKeyboardSetup::wbButton3_Click() {
    if (session.layout->Delete_Layout(session.layout->KeyboardFileName))
        Refresh_Choices();
}

void frmKeyboardSetup::wbButton4_Click(bool on) {
    practice.Set_Plain(on);
    Show_Practice(practice.Plain());
}

void frmKeyboardSetup::Press_Practice() {
    wbButton4->click();
}

void frmKeyboardSetup::Show_Practice(bool on) {
    wbButton4->setChecked(on);
    wbButton4->setText(on ? tr("Stop pract&ice") : tr("Pract&ice"));
}

// ---- channel templates ----

void frmKeyboardSetup::Command3_Click() {
    const int row = session.channels->ChannelI(selectedChannel);
    if (row < 0 || Is_On(session.channels->Channels[static_cast<std::size_t>(row)].IsAudio)) {
        session.doors.dialogs.Show_Message(
            Box_Kind::Information, row < 0 ? "You need to select a channel"
                                           : tr("An audio channel has no sound that a template could keep. "
                                                "Select another channel.")
                                                 .toStdString());
        return;
    }
    auto* question = new QInputDialog(this);
    question->setObjectName(QStringLiteral("templateName"));
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setWindowTitle(tr("Save as template"));
    question->setLabelText(tr("Name of the template:"));
    question->setTextValue(
        QString::fromStdString(session.channels->Channels[static_cast<std::size_t>(row)].ChannelName));
    question->resize(theme.Px(QUESTION_WIDTH), question->height());
    connect(question, &QInputDialog::textValueSelected, this, &frmKeyboardSetup::Write_Template);
    question->open();
}

void frmKeyboardSetup::Write_Template(const QString& name) {
    User_Dialogs& dialogs = session.doors.dialogs;
    const fs::path folder = session.paths.Get_Folder("templates") / CHANNEL_TEMPLATES;
    const fs::path file = ChannelTemplate::File_Of(folder, name.toStdString());
    const int row = session.channels->ChannelI(selectedChannel);
    if (row < 0)
        return;
    if (file.empty()) {
        dialogs.Show_Message(Box_Kind::Information, "Please type the filename");
        return;
    }
    std::error_code error;
    const std::string stem = file.stem().string();
    if (fs::exists(file, error) && !dialogs.Ask_YesNo("Overwrite file ? \r\n" + stem, "Confirm"))
        return;
    // A template names a layout by its file, which has to hold what is played now.
    if (session.layout->KeyboardModified && !session.layout->KeyboardFileName.empty() &&
        session.layout->SaveKeyboardSettings(session.layout->KeyboardFileName))
        Tell_Layout_Changed(session);
    ChannelTemplate made = Template_Of(session.channels->Channels[static_cast<std::size_t>(row)],
                                       session.layout->KeyboardFileName);
    made.InfoFile = stem + "info.html";
    fs::create_directories(folder, error);
    std::string problem;
    if (!tonvex::Write_Template(file, made, problem))
        dialogs.Show_Message(Box_Kind::Critical, "Error saving file\r\n" + problem);
}

// ---- tuning ----

void frmKeyboardSetup::mnuKeyboardTuning(int wanted) {
    if (wanted == session.layout->KeyboardTuning)
        return;
    Change_Layout([this, wanted] {
        session.layout->KeyboardTuning = wanted;
        session.layout->KeyboardTuning_Changed();
        session.project.Modified = true;
    });
    emit tuningChanged();
}

} // namespace tonvex
