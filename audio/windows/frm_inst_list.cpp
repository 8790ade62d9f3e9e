#include "audio/windows/frm_inst_list.h"

#include "audio/windows/choose_sound_font.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>
#include <filesystem>
#include <utility>

namespace tonvex {

namespace {

constexpr int TEST_MS = 1500;
constexpr int TEST_VELOCITY = 110;
constexpr int MELODIC_TEST_SLOT = 0;
constexpr int C3 = 48;
constexpr int OCTAVE = 12;

} // namespace

frmInstList::frmInstList(Session& theSession, const Theme& theme, QWidget* parent)
    : QDialog(parent), session(theSession) {
    setWindowTitle(tr("SoundFont list"));
    setObjectName(QStringLiteral("frmInstList"));
    for (const std::string& path : session.fonts->Get_CurList())
        if (!path.empty())
            rows.push_back(Read_Row(path));
    Make_Controls(theme);
    Timer1.setSingleShot(true);
    Show_Fonts(rows.empty() ? -1 : 0);
    connect(List1, &QListWidget::currentRowChanged, this, &frmInstList::Show_Selected);
    connect(List2, &QListWidget::currentRowChanged, this, &frmInstList::Enable_Controls);
    connect(&Timer1, &QTimer::timeout, this, &frmInstList::Stop_Test);
}

frmInstList::~frmInstList() = default;

void frmInstList::Make_Controls(const Theme& theme) {
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(theme.Px(20), theme.Px(20), theme.Px(20), theme.Px(20));
    all->setSpacing(theme.Px(16));
    auto* about = new QLabel(tr("Sounds of this song"), this);
    about->setFont(theme.Font(Text_Size::Title, QFont::DemiBold));
    all->addWidget(about);
    auto* columns = new QHBoxLayout;
    columns->setSpacing(theme.Px(20));
    columns->addWidget(Make_Fonts(theme), 1);
    columns->addWidget(Make_Instruments(theme), 1);
    all->addLayout(columns, 1);
    filePath = new QLabel(this);
    filePath->setObjectName(QStringLiteral("filePath"));
    filePath->setTextInteractionFlags(Qt::TextSelectableByMouse);
    filePath->setTextFormat(Qt::PlainText);
    filePath->setWordWrap(true);
    all->addWidget(filePath);
    auto* buttons = new QHBoxLayout;
    auto* cancel = new QPushButton(tr("&Cancel"), this);
    cancel->setObjectName(QStringLiteral("cancel"));
    cancel->setAutoDefault(false);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    auto* ok = new QPushButton(tr("O&K"), this);
    ok->setObjectName(QStringLiteral("ok"));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &frmInstList::Accept_List);
    buttons->addStretch(1);
    buttons->addWidget(cancel);
    buttons->addWidget(ok);
    all->addLayout(buttons);
    resize(QSize(theme.Px(760), theme.Px(520)).boundedTo(screen()->availableSize()));
}

QPushButton* frmInstList::Make_Button(const QString& text, const char* name, void (frmInstList::*clicked)()) {
    auto* button = new QPushButton(text, this);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, clicked);
    return button;
}

QWidget* frmInstList::Make_Fonts(const Theme& theme) {
    auto* column = new QWidget(this);
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(theme.Px(8));
    auto* label = new QLabel(tr("&Sound fonts (a lower one goes before those above it):"), column);
    label->setWordWrap(true);
    List1 = new QListWidget(column);
    List1->setObjectName(QStringLiteral("List1"));
    List1->setAccessibleName(tr("Sound fonts"));
    List1->setMinimumSize(theme.Px(280), theme.Px(150));
    label->setBuddy(List1);
    layout->addWidget(label);
    layout->addWidget(List1, 1);
    auto* addButton = Make_Button(tr("&Add..."), "add", &frmInstList::Add);
    removeButton = Make_Button(tr("&Remove"), "remove", &frmInstList::Remove);
    upButton = Make_Button(QStringLiteral("↑"), "up", &frmInstList::Move_Up);
    upButton->setAccessibleName(tr("Move up"));
    upButton->setToolTip(tr("Move the font up (Alt+Up)"));
    upButton->setShortcut(QKeySequence(Qt::ALT | Qt::Key_Up));
    downButton = Make_Button(QStringLiteral("↓"), "down", &frmInstList::Move_Down);
    downButton->setAccessibleName(tr("Move down"));
    downButton->setToolTip(tr("Move the font down (Alt+Down)"));
    downButton->setShortcut(QKeySequence(Qt::ALT | Qt::Key_Down));
    defaultButton = Make_Button(tr("&Default"), "default", &frmInstList::Save_Default);
    defaultButton->setToolTip(tr("A default sf2 is always loaded when a new file is created"));
    auto* buttons = new QHBoxLayout;
    for (QPushButton* button : {addButton, removeButton, upButton, downButton, defaultButton})
        buttons->addWidget(button);
    buttons->addStretch(1);
    layout->addLayout(buttons);
    return column;
}

QWidget* frmInstList::Make_Instruments(const Theme& theme) {
    auto* column = new QWidget(this);
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(theme.Px(8));
    auto* label = new QLabel(tr("&Instruments:"), column);
    List2 = new QListWidget(column);
    List2->setObjectName(QStringLiteral("List2"));
    List2->setAccessibleName(tr("Instruments"));
    List2->setMinimumSize(theme.Px(280), theme.Px(150));
    label->setBuddy(List2);
    auto* drums = new QLabel(tr("* = Drums/Percussion channel patch"), column);
    drums->setFont(theme.Font(Text_Size::Caption));
    layout->addWidget(label);
    layout->addWidget(List2, 1);
    layout->addWidget(drums);
    testButtons = {Make_Button(tr("Test C&3"), "test3", &frmInstList::Test_C3),
                   Make_Button(tr("Test C&4"), "test4", &frmInstList::Test_C4),
                   Make_Button(tr("Test C&5"), "test5", &frmInstList::Test_C5)};
    auto* buttons = new QHBoxLayout;
    for (QPushButton* button : testButtons)
        buttons->addWidget(button);
    buttons->addStretch(1);
    layout->addLayout(buttons);
    return column;
}

frmInstList::Font_Row frmInstList::Read_Row(const std::string& path) {
    Font_Row row;
    row.path = path;
    DLSListClass::Parse_SF2_File(path, row.title, row.presets);
    if (row.title.empty())
        row.title = std::filesystem::path(path).filename().string();
    return row;
}

bool frmInstList::Is_Default(const std::string& path) const {
    const auto& list = session.fonts->DefaultList;
    return std::find(list.begin(), list.end(), path) != list.end();
}

int frmInstList::Row() const {
    return List1->currentRow();
}

void frmInstList::Show_Fonts(int selectedRow) {
    {
        const QSignalBlocker noSignals(List1);
        List1->clear();
        for (const Font_Row& row : rows)
            List1->addItem(QString::fromStdString(row.title) +
                           (Is_Default(row.path) ? tr(" - default -") : QString()));
        List1->setCurrentRow(selectedRow);
    }
    Show_Selected();
}

void frmInstList::Show_Selected() {
    {
        const QSignalBlocker noSignals(List2);
        List2->clear();
        filePath->setText(rows.empty() ? tr("No sound font yet. Add one with Alt+A.") : tr("File path: "));
        if (Row() >= 0) {
            const Font_Row& row = rows[static_cast<std::size_t>(Row())];
            filePath->setText(tr("File path: ") + QString::fromStdString(row.path));
            for (const Font_Preset& preset : row.presets)
                List2->addItem((Is_On(preset.IsDrums) ? QStringLiteral("*") : QString()) +
                               QString::fromStdString(preset.PresetName));
            List2->setCurrentRow(row.presets.empty() ? -1 : 0);
        }
    }
    Enable_Controls();
}

void frmInstList::Enable_Controls() {
    const int row = Row();
    const int last = static_cast<int>(rows.size()) - 1;
    removeButton->setEnabled(row >= 0);
    upButton->setEnabled(row > 0);
    downButton->setEnabled(row >= 0 && row < last);
    // A test loads the fonts of this list: a song that runs would lose its own.
    const bool canTest =
        List2->currentRow() >= 0 && session.output->UsingSynth() && !session.transport.Song_Runs();
    for (QPushButton* button : testButtons)
        button->setEnabled(canTest);
}

void frmInstList::Add() {
    const std::string path = Choose_Sound_Font(session.doors.dialogs);
    if (path.empty())
        return;
    rows.push_back(Read_Row(path));
    listChanged = true;
    loadedForTest = false;
    Show_Fonts(static_cast<int>(rows.size()) - 1);
}

void frmInstList::Remove() {
    const int row = Row();
    if (row < 0)
        return;
    Stop_Test();
    rows.erase(rows.begin() + row);
    listChanged = true;
    loadedForTest = false;
    Show_Fonts(std::min(row, static_cast<int>(rows.size()) - 1));
}

void frmInstList::Move(int by) {
    const int from = Row();
    const int to = from + by;
    if (from < 0 || to < 0 || to >= static_cast<int>(rows.size()))
        return;
    std::swap(rows[static_cast<std::size_t>(from)], rows[static_cast<std::size_t>(to)]);
    listChanged = true;
    Show_Fonts(to);
}

void frmInstList::Save_Default() {
    const std::vector<std::string> before = session.fonts->DefaultList;
    session.fonts->DefaultList.clear();
    for (const Font_Row& row : rows)
        session.fonts->DefaultList.push_back(row.path);
    std::string error;
    if (!session.fonts->Save_DefaultList(error)) {
        session.fonts->DefaultList = before;
        session.doors.dialogs.Show_Message(
            Box_Kind::Warning, tr("The default list could not be saved.").toStdString() + "\n" + error,
            windowTitle().toStdString());
    }
    Show_Fonts(Row());
}

void frmInstList::Test_C3() {
    Test(C3);
}

void frmInstList::Test_C4() {
    Test(C3 + OCTAVE);
}

void frmInstList::Test_C5() {
    Test(C3 + 2 * OCTAVE);
}

void frmInstList::Load_For_Test() {
    if (loadedForTest)
        return;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    std::vector<std::filesystem::path> paths;
    for (const Font_Row& row : rows)
        paths.emplace_back(row.path);
    const std::vector<std::int32_t> handles = session.output->Sound().Set_Fonts(paths);
    for (std::size_t i = 0; i < rows.size(); ++i)
        rows[i].handle = i < handles.size() ? handles[i] : 0;
    QApplication::restoreOverrideCursor();
    fontsReplaced = true;
    loadedForTest = true;
}

void frmInstList::Test(int note) {
    Stop_Test();
    const int presetRow = List2->currentRow();
    if (Row() < 0 || presetRow < 0)
        return;
    Load_For_Test();
    const Font_Row& row = rows[static_cast<std::size_t>(Row())];
    if (row.handle <= 0) {
        session.doors.dialogs.Show_Message(
            Box_Kind::Warning, tr("Can't open file: ").toStdString() + row.path, windowTitle().toStdString());
        return;
    }
    const Font_Preset& preset = row.presets[static_cast<std::size_t>(presetRow)];
    testSlot = Is_On(preset.IsDrums) ? DRUM_SLOT : MELODIC_TEST_SLOT;
    testNote = note;
    session.output->Midi_SetPatch(testSlot, preset.PresetNumber, preset.PresetBank, row.handle);
    session.output->Midi_NoteOn(testSlot, note, TEST_VELOCITY);
    Timer1.start(TEST_MS);
}

void frmInstList::Stop_Test() {
    Timer1.stop();
    if (testNote >= 0)
        session.output->Midi_NoteOff(testSlot, testNote, 0);
    testNote = -1;
}

void frmInstList::Accept_List() {
    Stop_Test();
    std::vector<std::string> paths;
    for (const Font_Row& row : rows)
        paths.push_back(row.path);
    session.fonts->Set_CurList(std::move(paths));
    fontsReplaced = true;
    if (listChanged)
        session.project.Modified = true;
    accept();
}

void frmInstList::done(int result) {
    Stop_Test();
    if (std::exchange(fontsReplaced, false))
        Load_Song_Fonts();
    QDialog::done(result);
}

void frmInstList::Load_Song_Fonts() {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    session.fontsLoaded = session.fonts->Load_CurList_Fonts();
    session.gcm->GCM_SendAllPatches();
    session.hub->Message(this, MSG_GENERAL_UPDATE);
    QApplication::restoreOverrideCursor();
    for (const std::string& failed : session.fonts->Failed_Fonts())
        session.doors.dialogs.Show_Message(Box_Kind::Warning, tr("Can't open file: ").toStdString() + failed,
                                           windowTitle().toStdString());
}

} // namespace tonvex
