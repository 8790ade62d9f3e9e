#include "input/windows/frm_setup_midi_device.h"

#include "platform/qt/core_words.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QSlider>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace tonvex {

namespace {

constexpr int SHORTEST_BUFFER_MS = 10;
constexpr int LONGEST_BUFFER_MS = 300;
constexpr int EDGE_POLL_MS = 10;
constexpr int DEVICE_POLL_MS = 1000;

/// The output test: a C major chord picked from below, over and over.
QChordData Test_Chord() {
    QChordData chord;
    chord.Active = 3;
    chord.ChordNotes = {60, 64, 67};
    chord.ChordVol = 127;
    chord.ChordFlagB = 1;
    chord.PatternNoteCount = 3;
    chord.PatternNotes = {1, 2, 3};
    chord.StepMs = 300;
    return chord;
}
constexpr int TEST_SLOT = 0;

bool Same_Rows(const std::vector<Device_Row>& a, const std::vector<Device_Row>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const Device_Row& x, const Device_Row& y) {
        return x.DeviceID == y.DeviceID && x.Name == y.Name && x.IsSynth == y.IsSynth;
    });
}

void Fill(QListWidget* list, const std::vector<Device_Row>& rows, std::int32_t selectedId, bool anySelected) {
    const QSignalBlocker noSignals(list);
    list->clear();
    for (const Device_Row& row : rows) {
        auto* item = new QListWidgetItem(Core_Words(row.Name), list);
        item->setData(Qt::UserRole, row.DeviceID);
        if (anySelected && row.DeviceID == selectedId) {
            list->setCurrentItem(item);
            item->setSelected(true);
        }
    }
}

QLabel* Caption(const QString& text, const Theme& theme, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setFont(theme.Font(Text_Size::Caption));
    label->setWordWrap(true);
    return label;
}

} // namespace

frmSetUpMidiDevice::frmSetUpMidiDevice(Session& theSession, const Theme& theme, QWidget* parent)
    : QDialog(parent), session(theSession), sound(theSession) {
    setWindowTitle(tr("Output device setup"));
    setObjectName(QStringLiteral("frmSetUpMidiDevice"));
    Make_Controls(theme);
    Fill_Lists();
    const int stored = session.settings.Global_BASSBufferSize;
    HScroll1->setRange(SHORTEST_BUFFER_MS, std::max(LONGEST_BUFFER_MS, stored));
    HScroll1->setValue(stored);
    Check1->setChecked(session.options.Global_UseThreadEngine);
    Show_Buffer();
    Enable_Controls();

    connect(List1, &QListWidget::itemSelectionChanged, this, [this] {
        sound.Stop();
        Enable_Controls();
    });
    connect(List2, &QListWidget::itemSelectionChanged, this, [this] {
        Stop_Input_Test();
        Enable_Controls();
    });
    connect(HScroll1, &QSlider::valueChanged, this, &frmSetUpMidiDevice::Show_Buffer);
    connect(Command1, &QPushButton::clicked, this, &frmSetUpMidiDevice::Test_Input);
    connect(Command2, &QPushButton::clicked, this, &frmSetUpMidiDevice::Accept_Choice);
    connect(Command3, &QPushButton::clicked, this, &QDialog::reject);
    connect(Command4, &QPushButton::clicked, this, &frmSetUpMidiDevice::Toggle_Output_Test);
    connect(noInput, &QPushButton::clicked, List2, &QListWidget::clearSelection);
    connect(&Timer1, &QTimer::timeout, this, &frmSetUpMidiDevice::Look_For_Edge);
    connect(&sound, &Test_Sound::stopped, this, [this] { Command4->setText(tr("&Test")); });
    connect(&deviceTimer, &QTimer::timeout, this, &frmSetUpMidiDevice::Refresh_Lists);
    deviceTimer.start(DEVICE_POLL_MS);
}

frmSetUpMidiDevice::~frmSetUpMidiDevice() = default;

void frmSetUpMidiDevice::Make_Controls(const Theme& theme) {
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(theme.Px(20), theme.Px(20), theme.Px(20), theme.Px(20));
    all->setSpacing(theme.Px(16));
    auto* about = new QLabel(tr("Where the sound goes and what you play on"), this);
    about->setFont(theme.Font(Text_Size::Title, QFont::DemiBold));
    all->addWidget(about);
    auto* columns = new QHBoxLayout;
    columns->setSpacing(theme.Px(20));
    columns->addWidget(Make_Output_Column(theme), 1);
    columns->addWidget(Make_Input_Column(theme), 1);
    all->addLayout(columns, 1);
    all->addWidget(Make_Buffer_Part(theme));
    Check1 = new QCheckBox(tr("Use &new engine"), this);
    Check1->setObjectName(QStringLiteral("Check1"));
    all->addWidget(Check1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    Command3 = new QPushButton(tr("&Cancel"), this);
    Command3->setObjectName(QStringLiteral("Command3"));
    Command3->setAutoDefault(false);
    Command2 = new QPushButton(tr("O&K"), this);
    Command2->setObjectName(QStringLiteral("Command2"));
    Command2->setDefault(true);
    buttons->addWidget(Command3);
    buttons->addWidget(Command2);
    all->addLayout(buttons);
    resize(QSize(theme.Px(680), theme.Px(520)).boundedTo(screen()->availableSize()));
}

QWidget* frmSetUpMidiDevice::Make_Output_Column(const Theme& theme) {
    auto* column = new QWidget(this);
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(theme.Px(8));
    auto* label = new QLabel(tr("Output &Device (Audio output):"), column);
    List1 = new QListWidget(column);
    List1->setObjectName(QStringLiteral("List1"));
    List1->setAccessibleName(tr("Output Device (Audio output)"));
    List1->setMinimumSize(theme.Px(280), theme.Px(90));
    label->setBuddy(List1);
    Command4 = new QPushButton(tr("&Test"), column);
    Command4->setObjectName(QStringLiteral("Command4"));
    Command4->setAccessibleName(tr("Test the output device"));
    Command4->setToolTip(tr("Plays a C major chord on the selected output device"));
    Command4->setAutoDefault(false);
    layout->addWidget(label);
    layout->addWidget(List1, 1);
    auto* row = new QHBoxLayout;
    row->addWidget(Command4);
    row->addStretch(1);
    layout->addLayout(row);
    return column;
}

QWidget* frmSetUpMidiDevice::Make_Input_Column(const Theme& theme) {
    auto* column = new QWidget(this);
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(theme.Px(8));
    auto* label = new QLabel(tr("&Midi In Device (Optional):"), column);
    List2 = new QListWidget(column);
    List2->setObjectName(QStringLiteral("List2"));
    List2->setAccessibleName(tr("Midi In Device (Optional)"));
    List2->setMinimumSize(theme.Px(280), theme.Px(90));
    label->setBuddy(List2);
    Command1 = new QPushButton(tr("T&est"), column);
    Command1->setObjectName(QStringLiteral("Command1"));
    Command1->setAccessibleName(tr("Test the MIDI input device"));
    Command1->setToolTip(tr("Listens to the selected MIDI input device"));
    Command1->setAutoDefault(false);
    noInput = new QPushButton(tr("N&one"), column);
    noInput->setObjectName(QStringLiteral("noInput"));
    noInput->setAccessibleName(tr("Use no MIDI input device"));
    noInput->setToolTip(tr("Use no MIDI input device"));
    noInput->setAutoDefault(false);
    Label2 = new QLabel(column);
    Label2->setObjectName(QStringLiteral("Label2"));
    Label2->hide();
    inputHint = Caption(QString(), theme, column);
    inputHint->setObjectName(QStringLiteral("inputHint"));
    inputHint->hide();
    layout->addWidget(label);
    layout->addWidget(List2, 1);
    auto* row = new QHBoxLayout;
    row->addWidget(Command1);
    row->addWidget(noInput);
    row->addWidget(inputHint, 1);
    row->addWidget(Label2, 1);
    row->addStretch(0);
    layout->addLayout(row);
    return column;
}

QWidget* frmSetUpMidiDevice::Make_Buffer_Part(const Theme& theme) {
    bufferPart = new QWidget(this);
    auto* grid = new QGridLayout(bufferPart);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(theme.Px(12));
    grid->setVerticalSpacing(theme.Px(4));
    auto* label = new QLabel(tr("&Buffer size:"), bufferPart);
    HScroll1 = new QSlider(Qt::Horizontal, bufferPart);
    HScroll1->setObjectName(QStringLiteral("HScroll1"));
    HScroll1->setAccessibleName(tr("Buffer size in milliseconds"));
    HScroll1->setSingleStep(5);
    HScroll1->setPageStep(30);
    label->setBuddy(HScroll1);
    bufferValue = new QLabel(bufferPart);
    bufferValue->setObjectName(QStringLiteral("bufferValue"));
    bufferValue->setFont(theme.Digits(Text_Size::Body));
    bufferValue->setMinimumWidth(theme.Px(64));
    bufferValue->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto* quick = new QLabel(tr("High CPU Usage"), bufferPart);
    auto* slow = new QLabel(tr("Low CPU Usage"), bufferPart);
    auto* quickWhy = Caption(tr("Quicker response to keypress while recording"), theme, bufferPart);
    auto* slowWhy = Caption(tr("Slow response"), theme, bufferPart);
    latency = Caption(QString(), theme, bufferPart);
    latency->setObjectName(QStringLiteral("latency"));
    for (QLabel* right : {slow, slowWhy})
        right->setAlignment(Qt::AlignRight);
    grid->addWidget(label, 0, 0);
    grid->addWidget(HScroll1, 0, 1, 1, 2);
    grid->addWidget(bufferValue, 0, 3);
    grid->addWidget(quick, 1, 1);
    grid->addWidget(slow, 1, 2);
    grid->addWidget(quickWhy, 2, 1);
    grid->addWidget(slowWhy, 2, 2);
    grid->addWidget(latency, 3, 1, 1, 2);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(2, 1);
    return bufferPart;
}

void frmSetUpMidiDevice::Fill_Lists() {
    outputs = session.output->Output_Devices();
    inputs = session.output->Input_Devices();
    Fill(List1, outputs, session.settings.Global_MidiSetup_OutDevice, true);
    Fill(List2, inputs, session.settings.Global_MidiSetup_InDevice, true);
}

void frmSetUpMidiDevice::Refresh_Lists() {
    Enable_Controls(); // a run may have begun or ended
    auto outputsNow = session.output->Output_Devices();
    auto inputsNow = session.output->Input_Devices();
    if (!Same_Rows(outputs, outputsNow)) {
        std::int32_t id = 0;
        const bool any = Selected(List1, id);
        outputs = std::move(outputsNow);
        Fill(List1, outputs, id, any);
        std::int32_t still = 0;
        if (any && !Selected(List1, still))
            sound.Stop();
        Enable_Controls();
    }
    if (!Same_Rows(inputs, inputsNow)) {
        std::int32_t id = 0;
        const bool any = Selected(List2, id);
        inputs = std::move(inputsNow);
        Fill(List2, inputs, id, any);
        std::int32_t still = 0;
        if (any && !Selected(List2, still))
            Stop_Input_Test();
        Enable_Controls();
    }
}

bool frmSetUpMidiDevice::Selected(const QListWidget* list, std::int32_t& deviceId) {
    const QList<QListWidgetItem*> items = list->selectedItems();
    if (items.isEmpty())
        return false;
    deviceId = items.front()->data(Qt::UserRole).toInt();
    return true;
}

bool frmSetUpMidiDevice::Synth_Selected() const {
    std::int32_t id = 0;
    return Selected(List1, id) && std::any_of(outputs.begin(), outputs.end(), [id](const Device_Row& row) {
               return row.DeviceID == id && row.IsSynth == 1;
           });
}

void frmSetUpMidiDevice::Enable_Controls() {
    std::int32_t id = 0;
    bufferPart->setEnabled(Synth_Selected());
    // A run sounds on the open output and plays on the open input.
    const bool runs = session.transport.Song_Runs();
    Command4->setEnabled(Selected(List1, id) && !runs);
    Command1->setEnabled(Selected(List2, id) && !runs);
    noInput->setEnabled(Selected(List2, id));
    if (inputs.empty())
        inputHint->setText(tr("Plug in a MIDI keyboard: it appears here."));
    inputHint->setVisible(inputs.empty() || (Timer1.isActive() && Label2->isHidden()));
    Show_Latency();
}

void frmSetUpMidiDevice::Show_Buffer() {
    bufferValue->setText(tr("%1 ms").arg(HScroll1->value()));
}

void frmSetUpMidiDevice::Show_Latency() {
    QString text;
    if (Synth_Selected() && session.output->UsingSynth()) {
        const Sound_Status status = session.output->Sound().Status();
        if (status.quiet)
            text = tr("No sound device is open.");
        else if (status.open && status.latencyMs > 0.0)
            text = tr("Measured with %1 ms on %2: %3 ms from key to sound")
                       .arg(session.output->Global_BASSBufferSize)
                       .arg(QString::fromStdString(status.driver))
                       .arg(status.latencyMs, 0, 'f', 1);
    }
    latency->setText(text);
}

void frmSetUpMidiDevice::Test_Input() {
    std::int32_t id = 0;
    if (!Selected(List2, id))
        return;
    Stop_Input_Test();
    Label2->hide();
    inputTested = true;
    const std::string error = session.midiIn->MidiIn_Open(id);
    if (!error.empty()) {
        session.doors.dialogs.Show_Message(
            Box_Kind::Critical, error + "\n" + tr("Error initializing Midi In device").toStdString(),
            windowTitle().toStdString());
        return;
    }
    session.midiIn->Clear_Reported();
    inputHint->setText(tr("Play a key on the MIDI keyboard."));
    inputHint->show();
    Timer1.start(EDGE_POLL_MS);
}

void frmSetUpMidiDevice::Stop_Input_Test() {
    Timer1.stop();
    inputHint->hide();
    Label2->hide();
    if (inputTested)
        session.midiIn->MidiIn_Close();
}

void frmSetUpMidiDevice::Look_For_Edge() {
    session.midiIn->Poll();
    const Key_Edge edge = session.midiIn->MidiIn_GetNextEvent();
    if (edge.Key < 0)
        return;
    Label2->setText(edge.Action == 0 ? tr("Note on message received") : tr("Note off message received"));
    inputHint->hide();
    Label2->show();
}

void frmSetUpMidiDevice::Toggle_Output_Test() {
    if (sound.Is_On())
        sound.Stop();
    else
        Start_Output_Test();
}

void frmSetUpMidiDevice::Start_Output_Test() {
    std::int32_t id = 0;
    if (!Selected(List1, id))
        return;
    outputTested = true;
    if (!session.Try_Output(id, HScroll1->value()))
        return; // the user has been told
    Show_Latency();
    Command4->setText(tr("S&top"));
    sound.Start_Chord(TEST_SLOT, Test_Chord(), 0);
}

void frmSetUpMidiDevice::Accept_Choice() {
    std::int32_t outputId = 0;
    if (!Selected(List1, outputId)) {
        session.doors.dialogs.Show_Message(Box_Kind::Warning,
                                           tr("Please select an Output device").toStdString(),
                                           windowTitle().toStdString());
        List1->setFocus();
        return;
    }
    Settings& settings = session.settings;
    outputTested = outputTested || outputId != settings.Global_MidiSetup_OutDevice ||
                   HScroll1->value() != settings.Global_BASSBufferSize;
    settings.Global_MidiSetup_OutDevice = outputId;
    settings.Global_BASSBufferSize = HScroll1->value();
    session.options.Global_UseThreadEngine = Check1->isChecked();
    std::int32_t inputId = midiapi::NO_DEVICE;
    Selected(List2, inputId);
    inputTested = inputTested || inputId != settings.Global_MidiSetup_InDevice;
    settings.Global_MidiSetup_InDevice = inputId;
    accept();
}

void frmSetUpMidiDevice::done(int result) {
    sound.Stop();
    Stop_Input_Test();
    deviceTimer.stop();
    // Whoever waits for the end of the window finds the devices as they are to be.
    if (std::exchange(outputTested, false))
        session.Reopen_Output();
    session.input->MidiInDevice = session.settings.Global_MidiSetup_InDevice;
    // A run keeps the input that it has.
    if (std::exchange(inputTested, false) && !session.transport.Song_Runs()) {
        // Who wants no device plays the computer keys alone.
        const bool anyDevice = session.settings.Global_MidiSetup_InDevice != midiapi::NO_DEVICE;
        session.Select_Input(anyDevice ? session.settings.Global_Current_Input : 0);
    }
    QDialog::done(result);
}

} // namespace tonvex
