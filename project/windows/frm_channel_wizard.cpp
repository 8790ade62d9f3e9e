#include "project/windows/frm_channel_wizard.h"

#include "base/rounding.h"
#include "input/windows/layout_notice.h"
#include "project/template_channel.h"
#include "widgets/channel_texts.h"
#include "widgets/piano_view.h"
#include "widgets/value_slider.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStackedWidget>
#include <QTextBrowser>
#include <QVBoxLayout>

#include <algorithm>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

constexpr const char* KEPT_LAYOUT = "chwizkeyboardsettings.dat";
constexpr int HIGHEST = 127;
constexpr int CENTRE = 64;
constexpr int NEW_VOLUME = 80;
constexpr int LOWEST_KEY = 48;
constexpr int HIGHEST_KEY = 84;
constexpr int LONGEST_NAME = 50;
constexpr double FULL_VOLUME = 100.0; ///< a volume that leaves velocities as they are
constexpr double WHOLE_PERCENT = 100.0;

int In_Range(int value) {
    return std::clamp(value, 0, HIGHEST);
}

} // namespace

fs::path frmChannelWizard::Folder(const Session& session) {
    return session.paths.Get_Folder("templates") / CHANNEL_TEMPLATES;
}

frmChannelWizard::frmChannelWizard(Session& owner, const Theme& look, Practice_Mode& practiceMode,
                                   QWidget* parent)
    : QDialog(parent), session(owner), theme(look), practice(practiceMode),
      templates(List_Templates(Folder(owner))), clicks(owner) {
    setWindowTitle(tr("New channel"));
    setObjectName(QStringLiteral("frmChannelWizard"));
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(theme.Px(20), theme.Px(20), theme.Px(20), theme.Px(20));
    all->setSpacing(theme.Px(12));
    pages = new QStackedWidget(this);
    pages->addWidget(Make_Choice_Page());
    pages->addWidget(Make_Sound_Page());
    all->addWidget(pages, 1);
    all->addWidget(Make_Buttons());
    connect(List1, &QListWidget::currentRowChanged, this, &frmChannelWizard::Show_Template);
    connect(List1, &QListWidget::itemDoubleClicked, this, &frmChannelWizard::Next);
    Show_Template(-1);
    List1->setFocus();
}

frmChannelWizard::~frmChannelWizard() {
    End_Trial();
}

// ---- pages ----

QWidget* frmChannelWizard::Make_Choice_Page() {
    auto* page = new QWidget(this);
    auto* row = new QHBoxLayout(page);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(theme.Px(12));
    auto* left = new QVBoxLayout;
    auto* label = new QLabel(tr("&Templates:"), page);
    List1 = new QListWidget(page);
    // Rows are measured when the first one comes.
    List1->ensurePolished();
    List1->setObjectName(QStringLiteral("List1"));
    List1->setAccessibleName(tr("Templates"));
    List1->setToolTip(tr("Arrows choose, Enter goes on"));
    List1->setMinimumSize(theme.Px(200), theme.Px(280));
    for (const ChannelTemplate& one : templates)
        List1->addItem(QString::fromStdString(one.Name()));
    label->setBuddy(List1);
    left->addWidget(label);
    left->addWidget(List1, 1);
    browser = new QTextBrowser(page);
    browser->setObjectName(QStringLiteral("browser"));
    browser->setAccessibleName(tr("About the template"));
    browser->setMinimumSize(theme.Px(320), theme.Px(280));
    browser->setOpenExternalLinks(true);
    row->addLayout(left, 2);
    row->addWidget(browser, 3);
    return page;
}

QWidget* frmChannelWizard::Make_Sound_Page() {
    auto* page = new QWidget(this);
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(theme.Px(12));
    sound = new QLabel(page);
    sound->setFont(theme.Font(Text_Size::Title, QFont::DemiBold));
    auto* form = new QFormLayout;
    form->setSpacing(theme.Px(8));
    name = new QLineEdit(page);
    name->setObjectName(QStringLiteral("name"));
    name->setAccessibleName(tr("Name of the channel"));
    name->setMaxLength(LONGEST_NAME);
    volume = new Value_Slider(theme, Slider_Kind::Fill, tr("Volume"), 0, HIGHEST, NEW_VOLUME, 5, page);
    volume->setObjectName(QStringLiteral("volume"));
    volume->Set_Width(160);
    connect(volume, &Value_Slider::userChanged, this, &frmChannelWizard::Sound_Trial);
    auto* panRow = new QHBoxLayout;
    panSlider = new Value_Slider(theme, Slider_Kind::Centre, tr("Pan"), 0, HIGHEST, CENTRE, 4, page);
    panSlider->setObjectName(QStringLiteral("pan"));
    panSlider->Set_Width(160);
    panSlider->toText = [](int value) { return Pan_Text(value); };
    connect(panSlider, &Value_Slider::userChanged, this, [this](int value) {
        Show_Pan(value);
        Sound_Trial();
    });
    panText = new QLineEdit(page);
    panText->setObjectName(QStringLiteral("panText"));
    panText->setAccessibleName(tr("Pan in words or percent"));
    panText->setToolTip(tr("A percentage from left to right, as 25 %, or left, right or center"));
    panText->setMaximumWidth(theme.Px(90));
    connect(panText, &QLineEdit::editingFinished, this, &frmChannelWizard::Take_Pan_Text);
    panRow->addWidget(panSlider);
    panRow->addWidget(panText);
    panRow->addStretch(1);
    form->addRow(tr("&Name:"), name);
    form->addRow(tr("&Volume:"), volume);
    auto* panLabel = new QLabel(tr("&Pan:"), page);
    panLabel->setBuddy(panText);
    form->addRow(panLabel, panRow);
    piano = new Piano_View(theme, page);
    piano->setObjectName(QStringLiteral("piano"));
    piano->setAccessibleName(tr("Piano to try the sound"));
    piano->Set_Range(LOWEST_KEY, HIGHEST_KEY);
    piano->setMinimumHeight(theme.Px(110));
    connect(piano, &Piano_View::notePressed, this, [this](int note, int velocity) {
        piano->Set_Lit(note, true);
        clicks.Start_Notes(Trial_Slot(), {note},
                           In_Range(static_cast<int>(velocity * volume->value() / FULL_VOLUME)));
    });
    connect(piano, &Piano_View::noteReleased, this, [this](int note) {
        piano->Set_Lit(note, false);
        clicks.Stop();
    });
    auto* hint = new QLabel(tr("Try the sound: click on the piano, or play the computer keys or a MIDI "
                               "keyboard while no text field is in use."),
                            page);
    hint->setWordWrap(true);
    hint->setProperty("dim", true);
    column->addWidget(sound);
    column->addLayout(form);
    column->addWidget(piano, 1);
    column->addWidget(hint);
    return page;
}

QWidget* frmChannelWizard::Make_Buttons() {
    auto* line = new QWidget(this);
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(theme.Px(8));
    const auto add = [&](const QString& text, const char* objectName, auto clicked) {
        auto* button = new QPushButton(text, line);
        button->setObjectName(QLatin1String(objectName));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, clicked);
        row->addWidget(button);
        return button;
    };
    row->addStretch(1);
    add(tr("Cancel"), "cancel", &QDialog::reject);
    backButton = add(tr("&Back"), "back", &frmChannelWizard::Back);
    nextButton = add(tr("N&ext"), "next", &frmChannelWizard::Next);
    finishButton = add(tr("&Add channel"), "finish", &frmChannelWizard::Finish);
    backButton->setEnabled(false);
    finishButton->hide();
    nextButton->setDefault(true);
    return line;
}

// ---- the choice ----

const ChannelTemplate* frmChannelWizard::Chosen() const {
    const int row = List1->currentRow();
    return row >= 0 && row < static_cast<int>(templates.size()) ? &templates[static_cast<std::size_t>(row)]
                                                                : nullptr;
}

void frmChannelWizard::Show_Template(int) {
    const ChannelTemplate* chosen = Chosen();
    const std::string page = chosen == nullptr ? std::string() : Template_Page(*chosen);
    if (chosen != nullptr)
        browser->setSearchPaths({QString::fromStdString(chosen->TemplateFile.parent_path().string())});
    if (!page.empty())
        browser->setHtml(QString::fromStdString(page));
    else if (templates.empty())
        browser->setPlainText(tr("There are no channel templates in %1.")
                                  .arg(QString::fromStdString(Folder(session).string())));
    else
        browser->clear();
}

void frmChannelWizard::Next() {
    const ChannelTemplate* chosen = Chosen();
    if (chosen == nullptr) {
        session.doors.dialogs.Show_Message(Box_Kind::Information, "Please select a template.");
        return;
    }
    sound->setText(QString::fromStdString(chosen->Name()));
    name->setText(Suggested_Name(*chosen));
    volume->setValue(In_Range(chosen->TemplateVol));
    Show_Pan(In_Range(chosen->TemplatePan));
    pages->setCurrentIndex(1);
    backButton->setEnabled(true);
    nextButton->hide();
    finishButton->show();
    finishButton->setDefault(true);
    // Not on the name: keys play past text fields only.
    finishButton->setFocus();
    Begin_Trial();
}

void frmChannelWizard::Back() {
    End_Trial();
    pages->setCurrentIndex(0);
    backButton->setEnabled(false);
    finishButton->hide();
    nextButton->show();
    nextButton->setDefault(true);
    List1->setFocus();
}

QString frmChannelWizard::Suggested_Name(const ChannelTemplate& preset) const {
    QString text = QString::fromStdString(preset.Name());
    if (Is_On(preset.AddChannelCountToName))
        text += QStringLiteral(" %1").arg(session.channels->Count_Channels() + 1);
    return QString::fromStdString(session.channels->Unique_Name(text.toStdString()));
}

void frmChannelWizard::Finish() {
    const ChannelTemplate* chosen = Chosen();
    std::string refusal;
    if (chosen == nullptr)
        return;
    if (session.transport.Song_Runs()) {
        session.doors.dialogs.Show_Message(Box_Kind::Information,
                                           tr("Stop the song before you add a channel.").toStdString());
        return;
    }
    if (!session.channels->Style_Limit(static_cast<std::uint8_t>(chosen->TemplateStyle), refusal)) {
        session.doors.dialogs.Show_Message(Box_Kind::Warning, refusal);
        return;
    }
    Take_Pan_Text();
    const Template_Channel wanted{*chosen, name->text().trimmed().toStdString(),
                                  static_cast<std::uint8_t>(volume->value()), static_cast<std::uint8_t>(pan)};
    End_Trial();
    const auto added =
        Add_Template_Channel(*session.hub, *session.undo, *session.channels, *session.gcm, wanted);
    if (!added)
        return;
    emit channelAdded(*added);
    accept();
}

// ---- the sound ----

int frmChannelWizard::Trial_Slot() const {
    return std::max(slot, 0);
}

void frmChannelWizard::Begin_Trial() {
    const ChannelTemplate* chosen = Chosen();
    if (chosen == nullptr)
        return;
    const int wanted = chosen->TemplateOutput;
    slot = wanted >= 0 && wanted < GlobalChannelsManager::SLOTS ? wanted : session.channels->Next_Free_Slot();
    if (!chosen->KeyboardSetupFile.empty())
        Use_Layout(chosen->KeyboardSetupFile);
    session.doors.sound.Set_Effects(slot, chosen->Effects());
    Sound_Trial();
}

void frmChannelWizard::Use_Layout(const std::string& layoutName) {
    KeyboardLayout& layout = *session.layout;
    const fs::path keep = session.Temp_Folder();
    const fs::path file = session.paths.Get_Folder("config") / "keyboard" / (layoutName + ".dat");
    std::error_code error;
    // Without a place to keep the user's keys they stay; so does a layout that is not there.
    if (keep.empty() || fs::path(layoutName).has_parent_path() || !fs::exists(file, error))
        return;
    practice.Hold();
    const Kept_Layout now{layout.AppliedTuning, layout.KeyboardModified};
    if (layout.Write_Tables(keep / KEPT_LAYOUT, true)) {
        kept = now;
        if (layout.Read_File_Into_Tables(file, session.project.ProjectTempo))
            layout.KeyboardTuning_Changed();
        Tell_Layout_Changed(session);
    }
    practice.Let_Go();
}

void frmChannelWizard::Sound_Trial() {
    const ChannelTemplate* chosen = Chosen();
    if (slot < 0 || chosen == nullptr)
        return;
    practice.Set_Trial(Practice_Mode::Trial{
        static_cast<std::uint8_t>(slot),
        Patch_Row_Of(*session.channels, slot, chosen->TemplatePatch0, chosen->TemplatePatch1),
        static_cast<std::uint8_t>(volume->value()), static_cast<std::uint8_t>(pan)});
}

void frmChannelWizard::End_Trial() {
    if (slot < 0)
        return;
    clicks.Stop();
    practice.Set_Trial(std::nullopt);
    session.doors.sound.Set_Effects(slot, Effect_Settings());
    slot = -1;
    session.Send_Idle_Sound();
    if (!kept)
        return;
    KeyboardLayout& layout = *session.layout;
    const fs::path file = session.Temp_Folder() / KEPT_LAYOUT;
    practice.Hold();
    if (layout.Read_File_Into_Tables(file, session.project.ProjectTempo)) {
        layout.AppliedTuning = kept->appliedTuning;
        layout.KeyboardModified = kept->modified;
    }
    kept.reset();
    std::error_code ignored;
    fs::remove(file, ignored);
    Tell_Layout_Changed(session);
    practice.Let_Go();
}

void frmChannelWizard::Take_Pan_Text() {
    const auto typed = Pan_From_Text(panText->text().toStdString());
    // A text that was not touched leaves the finer value alone; one that is no pan is put right.
    if (typed && panText->isModified()) {
        Show_Pan(*typed);
        Sound_Trial();
    } else {
        Show_Pan(pan);
    }
}

void frmChannelWizard::Show_Pan(int value) {
    pan = value;
    panSlider->Show_Value(value);
    panText->setText(tr("%1 %").arg(RoundHalfUp(value * WHOLE_PERCENT / HIGHEST)));
    panText->setModified(false);
}

} // namespace tonvex
