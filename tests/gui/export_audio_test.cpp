#include "project/windows/frm_export_audio.h"
#include "support/click_font.h"
#include "support/window_world.h"

#include <QComboBox>
#include <QTimer>

using namespace tonvex;

class Export_Audio_Test : public QObject {
    Q_OBJECT
private slots:
    void The_Song_Is_Written_As_Chosen();
    void A_Strange_Ending_Is_Told();
};

void Export_Audio_Test::The_Song_Is_Written_As_Chosen() {
    World world;
    Session& session = world.S();
    test::Write_Click_Font(world.test.folder / "click.sf2", {{}});
    QVERIFY(session.fonts->Load_SF2_List({(world.test.folder / "click.sf2").string()}));
    session.channels->Store(0).AddNewEvent(0.0, NoteData{60, 100, 1.0});
    session.settings.Global_WMAExport_Bitrate = 100; // no row of its own: the nearest below
    const auto file = world.test.folder / "song.wma";
    world.test.dialogs.fileToSave = file.string();
    QStringList qualities;
    const auto choose = [&](int kbits, bool write) {
        QTimer::singleShot(0, qApp, [&, kbits, write] {
            auto* window = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            auto* quality = Find<QComboBox>(*window, "qualities");
            qualities << quality->currentText();
            QCOMPARE(Find<QComboBox>(*window, "rates")->currentText(), QStringLiteral("44100"));
            quality->setCurrentIndex(quality->findData(kbits));
            write ? window->accept() : window->reject();
        });
        Export_Audio(session, world.theme, Audio_Export::Wma, nullptr);
    };
    choose(64, false);
    QVERIFY(!std::filesystem::exists(file));
    QCOMPARE(session.settings.Global_WMAExport_Bitrate, 100);
    choose(160, true);
    choose(160, false);
    QCOMPARE(qualities, QStringList({"96 kbit/s", "96 kbit/s", "160 kbit/s"}));
    QVERIFY(std::filesystem::file_size(file) > 10000);
    QCOMPARE(world.test.dialogs.shown.size(), std::size_t{1});
    QVERIFY(world.test.dialogs.shown[0].text.starts_with("song.wma is ready.\nLength 0:00, peak -"));
}

void Export_Audio_Test::A_Strange_Ending_Is_Told() {
    World world;
    world.test.dialogs.fileToSave = (world.test.folder / "song.aac").string();
    Export_Audio(world.S(), world.theme, Audio_Export::Any, nullptr);
    QCOMPARE(world.test.dialogs.shown.size(), std::size_t{1});
    QVERIFY(world.test.dialogs.shown[0].kind == Box_Kind::Warning);
}

QTEST_MAIN(Export_Audio_Test)
#include "export_audio_test.moc"
