#include "audio/windows/frm_inst_list.h"
#include "audio/windows/frm_sf2_error.h"
#include "input/windows/frm_setup_midi_device.h"
#include "support/riff_bytes.h"
#include "support/window_world.h"

#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSlider>
#include <QTest>

using namespace tonvex;

namespace {

/// A font that is all headers: a title, a piano, a kit.
std::string Font_Bytes(const std::string& title) {
    return Silent_Font(title, Preset_Records({{"Piano", 0, 0}, {"Kit", 0, 128}}));
}

struct Font_World : World {
    const std::string one = test.folder.Write("one.sf2", Font_Bytes("First")).string();
    const std::string two = test.folder.Write("two.sf2", Font_Bytes("")).string();
};

QStringList Items(const QListWidget* list) {
    QStringList texts;
    for (int i = 0; i < list->count(); ++i)
        texts << list->item(i)->text();
    return texts;
}

} // namespace

class Setup_Dialogs_Test : public QObject {
    Q_OBJECT
private slots:
    void Setup_Shows_What_Is_In_Force() {
        World world;
        world.S().settings.Global_MidiSetup_InDevice = 4;
        world.S().settings.Global_BASSBufferSize = 40;
        const frmSetUpMidiDevice dialog(world.S(), world.theme);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Output device setup"));
        QCOMPARE(Items(Find<QListWidget>(dialog, "List1")), QStringList({"Port", "SoundFont synthesizer"}));
        QCOMPARE(Find<QListWidget>(dialog, "List1")->selectedItems().value(0)->text(),
                 QStringLiteral("SoundFont synthesizer"));
        QCOMPARE(Find<QListWidget>(dialog, "List2")->selectedItems().value(0)->text(),
                 QStringLiteral("Keys"));
        QCOMPARE(Find<QLabel>(dialog, "bufferValue")->text(), QStringLiteral("40 ms"));
        QVERIFY(Find<QCheckBox>(dialog, "Check1")->isChecked());
        QVERIFY(Find<QPushButton>(dialog, "Command2")->isDefault());
    }

    void Setup_Keeps_The_Choice_On_OK() {
        World world;
        frmSetUpMidiDevice dialog(world.S(), world.theme);
        Find<QListWidget>(dialog, "List1")->setCurrentRow(0);
        Find<QListWidget>(dialog, "List2")->setCurrentRow(0);
        Find<QSlider>(dialog, "HScroll1")->setValue(55);
        Find<QCheckBox>(dialog, "Check1")->setChecked(false);
        Click(dialog, "Command2");
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(world.S().settings.Global_MidiSetup_OutDevice, 3);
        QCOMPARE(world.S().settings.Global_MidiSetup_InDevice, 4);
        QCOMPARE(world.S().settings.Global_BASSBufferSize, 55);
        QVERIFY(!world.S().options.Global_UseThreadEngine);
        QCOMPARE(world.test.midi.openOutput, 3);
        QCOMPARE(world.S().input->MidiInDevice, 4);

        QVERIFY(world.S().Select_Input(1));
        frmSetUpMidiDevice again(world.S(), world.theme);
        Click(again, "noInput");
        Find<QListWidget>(again, "List1")->setCurrentRow(1);
        Click(again, "Command2");
        QCOMPARE(world.S().settings.Global_MidiSetup_InDevice, -1);
        QCOMPARE(world.S().input->InputDevice, 0); // or no take could begin
        QCOMPARE(world.test.midi.openOutput, -1);
        QVERIFY(world.S().output->UsingSynth());
        // 55 ms give an update period of 25 x 30 / 270 + 10 = 12.8, rounded 13; the device can do 6: enough.
        QCOMPARE(world.test.sound.opened.back().bufferMs, 55);
        QCOMPARE(world.test.sound.opened.back().updateMs, 13);
    }

    void Setup_Leaves_All_On_Cancel() {
        World world;
        frmSetUpMidiDevice dialog(world.S(), world.theme);
        bool synthAtTheEnd = false;
        connect(&dialog, &QDialog::finished, this, [&] { synthAtTheEnd = world.S().output->UsingSynth(); });
        Find<QListWidget>(dialog, "List1")->setCurrentRow(0);
        Click(dialog, "Command4");
        QCOMPARE(world.test.midi.openOutput, 3);
        Find<QSlider>(dialog, "HScroll1")->setValue(55);
        QTest::keyClick(&dialog, Qt::Key_Escape);
        QCOMPARE(dialog.result(), int(QDialog::Rejected));
        QCOMPARE(world.S().settings.Global_MidiSetup_OutDevice, -1000);
        QCOMPARE(world.S().settings.Global_BASSBufferSize, 100);
        QVERIFY2(synthAtTheEnd, "what the test had opened is closed again before the end is told");
        QCOMPARE(world.test.sound.opened.back().bufferMs, 100);
    }

    void Setup_Needs_An_Output() {
        World world;
        world.S().settings.Global_MidiSetup_OutDevice = 77;
        frmSetUpMidiDevice dialog(world.S(), world.theme);
        dialog.show();
        Click(dialog, "Command2");
        QCOMPARE(world.Last_Text(), std::string("Please select an Output device"));
        QCOMPARE(world.test.dialogs.shown.back().kind, Box_Kind::Warning);
        QVERIFY(dialog.isVisible());
        QCOMPARE(world.S().settings.Global_MidiSetup_OutDevice, 77);
    }

    void Setup_Enables_By_Kind_Of_Device() {
        World world;
        const frmSetUpMidiDevice dialog(world.S(), world.theme);
        auto* list = Find<QListWidget>(dialog, "List1");
        const std::tuple<int, bool, bool> rows[] = {{1, true, true}, {0, false, true}, {-1, false, false}};
        for (const auto& [row, buffer, test] : rows) {
            if (row < 0)
                list->clearSelection();
            else
                list->setCurrentRow(row);
            QCOMPARE(Find<QSlider>(dialog, "HScroll1")->isEnabled(), buffer);
            QCOMPARE(Find<QPushButton>(dialog, "Command4")->isEnabled(), test);
        }
        QVERIFY(!Find<QPushButton>(dialog, "Command1")->isEnabled());
        Find<QListWidget>(dialog, "List2")->setCurrentRow(0);
        QVERIFY(Find<QPushButton>(dialog, "Command1")->isEnabled());
    }

    void Setup_Tests_The_Input() {
        World world;
        frmSetUpMidiDevice dialog(world.S(), world.theme);
        dialog.show();
        Find<QListWidget>(dialog, "List2")->setCurrentRow(0);
        auto* heard = Find<QLabel>(dialog, "Label2");
        world.test.midi.openResult = Midi_Result::Allocated;
        Click(dialog, "Command1");
        QCOMPARE(world.Last_Text(), std::string("MMSYSERR_ALLOCATED\nError initializing Midi In device"));
        QCOMPARE(world.test.dialogs.shown.back().kind, Box_Kind::Critical);
        world.test.midi.openResult = Midi_Result::Ok;
        Click(dialog, "Command1");
        QVERIFY(heard->isHidden());
        world.test.midi.incoming.push_back({0, 0x90, 60, 100});
        QTRY_COMPARE(heard->text(), QStringLiteral("Note on message received"));
        QVERIFY(!heard->isHidden());
        world.test.midi.incoming.push_back({0, 0x80, 60, 0});
        QTRY_COMPARE(heard->text(), QStringLiteral("Note off message received"));
        dialog.reject();
        QCOMPARE(world.test.midi.openInput, -1);
    }

    void Setup_Tests_The_Output() {
        World world;
        frmSetUpMidiDevice dialog(world.S(), world.theme);
        auto* button = Find<QPushButton>(dialog, "Command4");
        QCOMPARE(button->text().remove('&'), QStringLiteral("Test"));
        button->click();
        QCOMPARE(button->text().remove('&'), QStringLiteral("Stop"));
        const auto& posted = world.test.sound.posted;
        QCOMPARE(Count(posted, Sound_Op::NoteOn, 0, 60), 1);
        world.test.counter.Advance_Ms(299);
        QTest::qWait(20);
        QCOMPARE(Count(posted, Sound_Op::NoteOn, 0, 64), 0);
        world.test.counter.Advance_Ms(2);
        QTRY_COMPARE(Count(posted, Sound_Op::NoteOn, 0, 64), 1);
        QCOMPARE(Count(posted, Sound_Op::NoteOff, 0, 60), 1);
        world.test.counter.Advance_Ms(600);
        QTRY_COMPARE(Count(posted, Sound_Op::NoteOn, 0, 60), 2);
        QCOMPARE(Count(posted, Sound_Op::NoteOn, 0, 67), 1);
        for (const Sound_Message& message : posted)
            QVERIFY(message.op != Sound_Op::NoteOn || message.b == 127);
        button->click();
        QCOMPARE(button->text().remove('&'), QStringLiteral("Test"));
        QCOMPARE(posted.back().op, Sound_Op::NoteOff);
        QCOMPARE(int(posted.back().a), 60);
    }

    void Setup_Follows_The_Devices() {
        World world;
        const frmSetUpMidiDevice dialog(world.S(), world.theme);
        auto* list = Find<QListWidget>(dialog, "List1");
        list->setCurrentRow(0);
        world.test.midi.outputs = {{"New", 7}, {"Port", 3}};
        world.test.midi.inputs.clear();
        QTRY_COMPARE(list->count(), 3);
        QCOMPARE(list->selectedItems().value(0)->text(), QStringLiteral("Port"));
        QCOMPARE(Find<QListWidget>(dialog, "List2")->count(), 0);
        world.test.midi.outputs.clear();
        QTRY_COMPARE(list->count(), 1);
        QVERIFY(list->selectedItems().isEmpty());
        QVERIFY(!Find<QPushButton>(dialog, "Command4")->isEnabled());
    }

    void Fonts_Are_Listed() {
        Font_World world;
        world.S().fonts->CurList = {world.one, world.two};
        world.S().fonts->DefaultList = {world.one};
        const frmInstList dialog(world.S(), world.theme);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("SoundFont list"));
        QCOMPARE(Items(Find<QListWidget>(dialog, "List1")), QStringList({"First - default -", "two.sf2"}));
        QCOMPARE(Items(Find<QListWidget>(dialog, "List2")), QStringList({"Piano", "*Kit"}));
        QCOMPARE(Find<QLabel>(dialog, "filePath")->text().toStdString(), "File path: " + world.one);
        Find<QListWidget>(dialog, "List1")->setCurrentRow(1);
        QCOMPARE(Find<QLabel>(dialog, "filePath")->text().toStdString(), "File path: " + world.two);
    }

    void Fonts_Are_Added_Moved_And_Removed() {
        Font_World world;
        frmInstList dialog(world.S(), world.theme);
        auto* list = Find<QListWidget>(dialog, "List1");
        const auto add = [&](const std::string& path) {
            world.test.dialogs.fileToOpen = path;
            Click(dialog, "add");
        };
        add(world.one);
        add(world.two);
        add("");
        QCOMPARE(list->count(), 2);
        QVERIFY(world.test.dialogs.shown.empty());
        add("/nowhere.sf2");
        QCOMPARE(world.Last_Text(), std::string("Can't open file: /nowhere.sf2"));
        add(world.test.folder.Write("bad.sf2", Font_Bytes("x").substr(0, 40)).string());
        QCOMPARE(world.Last_Text(), std::string("Invalid SF2 file"));
        QCOMPARE(Items(list), QStringList({"First", "two.sf2"}));
        QVERIFY(!Find<QPushButton>(dialog, "down")->isEnabled());
        Click(dialog, "up");
        QCOMPARE(Items(list), QStringList({"two.sf2", "First"}));
        QVERIFY(!Find<QPushButton>(dialog, "up")->isEnabled());
        Click(dialog, "down");
        Click(dialog, "remove");
        QCOMPARE(Items(list), QStringList({"First"}));
        QVERIFY(world.S().fonts->CurList.empty());
        Click(dialog, "ok");
        QCOMPARE(world.S().fonts->CurList, std::vector<std::string>{world.one});
        QVERIFY(world.S().fontsLoaded);
        QVERIFY(world.S().project.Modified);
        QCOMPARE(world.test.sound.fontSets.back(), std::vector<std::filesystem::path>{world.one});

        frmInstList other(world.S(), world.theme);
        Click(other, "remove");
        Click(other, "cancel");
        QCOMPARE(world.S().fonts->CurList, std::vector<std::string>{world.one});
    }

    void Fonts_Are_Tested() {
        Font_World world;
        world.S().fonts->CurList = {world.one};
        frmInstList dialog(world.S(), world.theme);
        world.test.dialogs.fileToOpen = world.two;
        Click(dialog, "add");
        auto& posted = world.test.sound.posted;
        const std::tuple<const char*, int, int, int> rows[] = {
            {"test3", 0, 0, 48}, {"test4", 0, 0, 60}, {"test5", 1, 9, 72}};
        for (const auto& [button, instrument, slot, note] : rows) {
            posted.clear();
            Find<QListWidget>(dialog, "List2")->setCurrentRow(instrument);
            Click(dialog, button);
            QCOMPARE(Count(posted, Sound_Op::NoteOn, slot, note), 1);
            const auto patch = std::find_if(posted.begin(), posted.end(),
                                            [](const Sound_Message& m) { return m.op == Sound_Op::Patch; });
            QVERIFY(patch != posted.end());
            QCOMPARE(int(patch->slot), slot);
            QVERIFY2(patch->font > 0, "of the font selected");
        }
        QTRY_COMPARE(Count(posted, Sound_Op::NoteOff, 9, 72), 1);
        dialog.reject();
        QCOMPARE(world.S().fonts->CurList, std::vector<std::string>{world.one});
        QCOMPARE(world.test.sound.fontSets.back(), std::vector<std::filesystem::path>{world.one});
    }

    void Fonts_Become_The_Default() {
        Font_World world;
        world.S().fonts->CurList = {world.one};
        const frmInstList dialog(world.S(), world.theme);
        Click(dialog, "default");
        QCOMPARE(Items(Find<QListWidget>(dialog, "List1")), QStringList({"First - default -"}));
        QCOMPARE(Temp_Folder::Text_Of(world.S().fonts->Get_DefaultList_Path()), world.one + "\n");
    }

    void Font_Error_Has_Three_Ways() {
        World midi;
        frmSF2Error useMidi(midi.S(), midi.theme);
        QCOMPARE(useMidi.windowTitle(), QStringLiteral("Sound Font files"));
        Click(useMidi, "useMidi");
        QCOMPARE(midi.test.midi.openOutput, 3);
        QCOMPARE(midi.S().settings.Global_MidiSetup_OutDevice, 3);
        QVERIFY(!useMidi.Program_Ends());

        Font_World browse;
        frmSF2Error browsing(browse.S(), browse.theme);
        browsing.show();
        Click(browsing, "browse");
        QVERIFY2(browsing.isVisible(), "cancelled");
        browse.test.dialogs.fileToOpen = browse.one;
        Click(browsing, "browse");
        QVERIFY(!browsing.isVisible());
        QVERIFY(browse.S().fontsLoaded);
        QCOMPARE(Temp_Folder::Text_Of(browse.S().fonts->Get_DefaultList_Path()), browse.one + "\n");

        World install;
        frmSF2Error installing(install.S(), install.theme);
        Click(installing, "install");
        QVERIFY(installing.Program_Ends());
        QCOMPARE(install.test.dialogs.shown.back().kind, Box_Kind::Warning);
        QVERIFY(install.Last_Text().find("timgm6mb-soundfont") != std::string::npos);
    }
};

QTEST_MAIN(Setup_Dialogs_Test)
#include "setup_dialogs_test.moc"
