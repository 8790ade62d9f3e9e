#pragma once

#include "app/session.h"
#include "engine/windows/practice_mode.h"
#include "input/windows/test_sound.h"
#include "project/channel_template.h"
#include "widgets/theme.h"

#include <QDialog>

#include <optional>
#include <string>
#include <vector>

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QStackedWidget;
class QTextBrowser;

namespace tonvex {

class Piano_View;
class Value_Slider;

/// "New channel": first a template and the page that tells about it, then name, volume and pan, with the
/// sound under the computer keys, a MIDI keyboard and a piano to click on. The channel is added at the end.
/// Not modal, since keys play only past modal windows; while the sound is tried the keyboard may have the
/// template's layout and gets its own back when the window goes. Interface thread. Session, theme and
/// practice outlive it.
class frmChannelWizard final : public QDialog {
    Q_OBJECT
public:
    frmChannelWizard(Session& session, const Theme& theme, Practice_Mode& practice,
                     QWidget* parent = nullptr);
    ~frmChannelWizard() override;

    /// Templates are listed from here: <templates>/channels.
    static std::filesystem::path Folder(const Session& session);

signals:
    void channelAdded(std::int32_t channelId);

private:
    QWidget* Make_Choice_Page();
    QWidget* Make_Sound_Page();
    QWidget* Make_Buttons();
    void Show_Template(int row);
    void Next();
    void Back();
    void Finish();
    void Begin_Trial();
    void Use_Layout(const std::string& layoutName);
    void End_Trial();
    void Sound_Trial();
    void Take_Pan_Text();
    void Show_Pan(int pan);
    const ChannelTemplate* Chosen() const;
    int Trial_Slot() const;
    QString Suggested_Name(const ChannelTemplate& preset) const;

    Session& session;
    const Theme& theme;
    Practice_Mode& practice;
    std::vector<ChannelTemplate> templates;
    Test_Sound clicks;
    QStackedWidget* pages = nullptr;
    QListWidget* List1 = nullptr;
    QTextBrowser* browser = nullptr;
    QLineEdit* name = nullptr;
    Value_Slider* volume = nullptr;
    Value_Slider* panSlider = nullptr;
    QLineEdit* panText = nullptr;
    QLabel* sound = nullptr;
    Piano_View* piano = nullptr;
    QPushButton* backButton = nullptr;
    QPushButton* nextButton = nullptr;
    QPushButton* finishButton = nullptr;
    /// The user's keyboard, which waits in a file.
    struct Kept_Layout {
        int appliedTuning;
        bool modified;
    };
    std::optional<Kept_Layout> kept;
    int pan = 64;
    int slot = -1; ///< of the trial; -1 while none is on
};

} // namespace tonvex
