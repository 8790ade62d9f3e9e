#pragma once

#include "app/session.h"
#include "audio/font_preset.h"
#include "widgets/theme.h"

#include <QDialog>
#include <QTimer>

#include <cstdint>
#include <string>
#include <vector>

class QLabel;
class QListWidget;
class QPushButton;

namespace tonvex {

/// "SoundFont list": the fonts of the song, later ones before earlier ones where both have a sound. OK takes
/// the list over and loads it; "Cancel" and Escape leave all as it was, the fonts that a test had loaded
/// included. Interface thread. Session and theme outlive the window.
class frmInstList final : public QDialog {
    Q_OBJECT
public:
    frmInstList(Session& session, const Theme& theme, QWidget* parent = nullptr);
    ~frmInstList() override;

    void done(int result) override;

private:
    struct Font_Row {
        std::string path;
        std::string title;
        std::vector<Font_Preset> presets;
        std::int32_t handle = 0; ///< of the sound door, while the list stands loaded for a test
    };

    void Make_Controls(const Theme& theme);
    QWidget* Make_Fonts(const Theme& theme);
    QWidget* Make_Instruments(const Theme& theme);
    QPushButton* Make_Button(const QString& text, const char* name, void (frmInstList::*clicked)());

    static Font_Row Read_Row(const std::string& path);
    bool Is_Default(const std::string& path) const;
    /// The row selected in List1, -1 when none is.
    int Row() const;
    void Show_Fonts(int selectedRow);
    void Show_Selected();
    void Enable_Controls();

    void Add();
    void Remove();
    void Move_Up() { Move(-1); }
    void Move_Down() { Move(1); }
    void Move(int by);
    void Save_Default();
    void Test_C3();
    void Test_C4();
    void Test_C5();
    void Test(int note);
    void Load_For_Test();
    void Stop_Test();
    void Accept_List();
    void Load_Song_Fonts();

    Session& session;
    std::vector<Font_Row> rows;
    QListWidget* List1 = nullptr; ///< fonts
    QListWidget* List2 = nullptr; ///< instruments of the font selected
    QLabel* filePath = nullptr;
    QPushButton* removeButton = nullptr;
    QPushButton* upButton = nullptr;
    QPushButton* downButton = nullptr;
    QPushButton* defaultButton = nullptr;
    std::vector<QPushButton*> testButtons;
    QTimer Timer1; ///< ends the test note
    int testSlot = 0;
    int testNote = -1;
    bool listChanged = false;   ///< since it was opened
    bool loadedForTest = false; ///< the rows stand loaded as they are now
    bool fontsReplaced = false; ///< other fonts than the song's are loaded
};

} // namespace tonvex
