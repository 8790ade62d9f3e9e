#include "project/windows/frm_channel_wizard.h"
#include "project/windows/frm_new_file.h"
#include "project/windows/frm_save_as_template.h"
#include "support/temp_folder.h"
#include "support/window_world.h"
#include "widgets/piano_view.h"
#include "widgets/value_slider.h"

#include <QLineEdit>
#include <QListWidget>
#include <QSignalSpy>
#include <QTest>
#include <QTextBrowser>

#include <memory>

using namespace tonvex;

class Template_Windows_Test : public QObject {
    Q_OBJECT
private slots:
    void the_wizard_tries_a_template_and_adds_its_channel();
    void the_wizard_gives_back_what_it_tried();
    void a_new_song_is_empty_or_a_template();
    void a_template_is_saved_under_a_name();
};

namespace {

struct Wizard_World : World {
    Wizard_World() {
        const auto folder = frmChannelWizard::Folder(S());
        std::filesystem::create_directories(folder);
        std::ofstream(folder / "Lead.txt")
            << "Infofile = leadinfo.html\nAddChannelCountToName = true\nPan = 100\nVol = 90\n"
               "PatchByte0  = 81\nStyle  = bass\nint2 = 7\nKeyboardSetupFile = Other\n"
               "GUID_DSFX_STANDARD_ECHO = 30 40\n";
        std::ofstream(folder / "leadinfo.html") << "<p>A bright voice.</p>";
        std::ofstream(folder / "Kit.txt") << "OutputChannel = 9\n";
        KeyboardLayout other(S().notes, test.dialogs);
        other.Set_Key_Note(KEY, NoteData{60, 100, 0.0});
        other.Write_Tables(test.folder / "config/keyboard/Other.dat", true);
        S().layout->Set_Key_Note(KEY, NoteData{48, 100, 0.0});
    }
    static void Choose(QWidget& window, const char* name) {
        auto* list = Find<QListWidget>(window, "List1");
        list->setCurrentItem(list->findItems(QLatin1String(name), Qt::MatchExactly).value(0));
    }
    int Key_Note() { return S().layout->KeyNoteTable[KEY].Note; }
    static constexpr int KEY = 30;
    Practice_Mode practice{S()};
};

/// A window that is not deleted by its own end.
template <typename Window, typename... Arg>
std::unique_ptr<Window> Shown(Arg&&... arg) {
    auto window = std::make_unique<Window>(std::forward<Arg>(arg)...);
    window->show();
    return window;
}

} // namespace

void Template_Windows_Test::the_wizard_tries_a_template_and_adds_its_channel() {
    Wizard_World w;
    auto window = Shown<frmChannelWizard>(w.S(), w.theme, w.practice);
    Find<QListWidget>(*window, "List1")->setCurrentRow(-1); // the focus takes the first one
    Click(*window, "next");
    QCOMPARE(w.Last_Text(), std::string("Please select a template."));
    w.Choose(*window, "Lead");
    QVERIFY(Find<QTextBrowser>(*window, "browser")->toPlainText().contains("bright"));
    w.Choose(*window, "Kit");
    QVERIFY(Find<QTextBrowser>(*window, "browser")->toPlainText().isEmpty());
    w.Choose(*window, "Lead");
    Click(*window, "next");
    QCOMPARE(Find<QLineEdit>(*window, "name")->text(), QStringLiteral("Lead 2"));
    QCOMPARE(w.Key_Note(), 60); // the template's keys, while it is tried
    auto* pan = Find<QLineEdit>(*window, "panText");
    QCOMPARE(pan->text(), QStringLiteral("79 %"));

    w.test.sound.posted.clear();
    emit Find<Piano_View>(*window, "piano")->notePressed(64, 100);
    QCOMPARE(Count(w.test.sound.posted, Sound_Op::NoteOn, 1, 64), 1);
    for (const char* text : {"nonsense", "left"}) {
        pan->clear();
        QTest::keyClicks(pan, QLatin1String(text));
        emit pan->editingFinished();
    }
    QCOMPARE(pan->text(), QStringLiteral("0 %"));
    QSignalSpy added(window.get(), &frmChannelWizard::channelAdded);
    Click(*window, "finish");
    QCOMPARE(added.count(), 1);
    QCOMPARE(w.Key_Note(), 48);

    const GlobalChannel& channel = w.S().channels->Channels[1];
    QCOMPARE(channel.ChannelName, std::string("Lead 2"));
    QCOMPARE(int{channel.OutputChannel}, 1);
    QCOMPARE(int{channel.Pan}, 0);
    QCOMPARE(int{channel.Volume}, 90);
    QCOMPARE(int{channel.PatchByte0}, 81);
    QCOMPARE(int{channel.Style}, 3);
    QCOMPARE(int{channel.StyleInts[1]}, 7);
    QVERIFY(w.S().channels->Effects.Is_On(1, Effect_Kind::Echo));
    QVERIFY(w.S().project.Modified);
}

void Template_Windows_Test::the_wizard_gives_back_what_it_tried() {
    Wizard_World w;
    w.S().layout->KeyboardModified = false;
    auto window = Shown<frmChannelWizard>(w.S(), w.theme, w.practice);
    w.Choose(*window, "Lead");
    Click(*window, "next");
    QVERIFY(w.practice.Is_Running());
    Click(*window, "back");
    QVERIFY(!w.practice.Is_Running());
    QCOMPARE(w.Key_Note(), 48);
    Click(*window, "next");
    window.reset(); // closed by whatever road
    QVERIFY(!w.practice.Is_Running());
    QCOMPARE(w.Key_Note(), 48);
    QVERIFY(!w.S().layout->KeyboardModified);
    QCOMPARE(w.S().channels->Count_Channels(), 1);
    QVERIFY(!w.S().project.Modified);
    QVERIFY(!std::filesystem::exists(w.S().Temp_Folder() / "chwizkeyboardsettings.dat"));
}

void Template_Windows_Test::a_new_song_is_empty_or_a_template() {
    World w;
    const auto folder = w.test.folder / "none" / "yet";
    const std::string question =
        "Can't find the directory: " + folder.string() + "\r\nDo you want to create the directory ?";
    std::vector<std::filesystem::path> made;
    bool goesWell = false;
    const auto make = [&](const std::filesystem::path& file) {
        made.push_back(file);
        return goesWell;
    };
    Shown<frmNewFile>(w.test.dialogs, w.theme, folder, make);
    QCOMPARE(w.test.dialogs.asked, std::vector<std::string>{question});
    QVERIFY(!std::filesystem::exists(folder));
    w.test.dialogs.answers[question] = true;
    Shown<frmNewFile>(w.test.dialogs, w.theme, folder, make);
    QVERIFY(std::filesystem::is_directory(folder));

    std::ofstream(folder / "Band.tvx") << "x";
    std::ofstream(folder / "other.txt") << "x";
    auto window = Shown<frmNewFile>(w.test.dialogs, w.theme, folder, make);
    QCOMPARE(Find<QListWidget>(*window, "List1")->count(), 1);
    Find<QAbstractButton>(*window, "Option2")->setChecked(true);
    window->accept();
    QCOMPARE(w.Last_Text(), std::string("You must select a file from the list."));
    QVERIFY(made.empty());
    Find<QListWidget>(*window, "List1")->setCurrentRow(0);
    window->accept();
    QVERIFY(window->isVisible()); // it did not go well
    goesWell = true;
    Find<QAbstractButton>(*window, "Option1")->setChecked(true);
    window->accept();
    QVERIFY(!window->isVisible());
    QCOMPARE(made, (std::vector<std::filesystem::path>{folder / "Band.tvx", {}}));
}

void Template_Windows_Test::a_template_is_saved_under_a_name() {
    World w;
    const auto folder = w.test.folder / "templates";
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "Band.tvx") << "x";
    std::vector<std::filesystem::path> saved;
    const auto save = [&](const std::filesystem::path& file) {
        saved.push_back(file);
        return true;
    };
    auto window = Shown<frmSaveAsTemplate>(w.test.dialogs, w.theme, folder, save);
    auto* name = Find<QLineEdit>(*window, "Text1");
    for (const char* bad : {"", "  ", ".tvx", ".."}) {
        name->setText(QLatin1String(bad));
        window->accept();
        QCOMPARE(w.Last_Text(), std::string("Please type the filename"));
    }
    Find<QListWidget>(*window, "List1")->setCurrentRow(0);
    QCOMPARE(name->text(), QStringLiteral("Band"));
    window->accept();
    QCOMPARE(w.test.dialogs.asked.back(), std::string("Overwrite file ? \r\nBand"));
    QVERIFY(saved.empty() && window->isVisible());
    w.test.dialogs.answers["Overwrite file ? \r\nBand"] = true;
    window->accept();
    name->setText(QStringLiteral("../New one.TVX"));
    window->accept();
    QCOMPARE(saved, (std::vector<std::filesystem::path>{folder / "Band.tvx", folder / "New one.tvx"}));
}

QTEST_MAIN(Template_Windows_Test)
#include "template_windows_test.moc"
