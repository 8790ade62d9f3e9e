#include "app/windows/frm_help.h"
#include "app/windows/video_pane.h"
#include "engine/windows/frm_recorder.h"
#include "support/window_program.h"
#include "widgets/help_view.h"

#include <QCheckBox>
#include <QDockWidget>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRegularExpression>
#include <QTimer>
#include <QTreeWidget>

#include <fstream>

using namespace tonvex;

namespace {

namespace fs = std::filesystem;

const fs::path HELP = fs::path(TONVEX_SOURCE_DATA) / "help";

frmHelp* Help_Window() {
    for (QWidget* window : QApplication::topLevelWidgets())
        if (auto* help = qobject_cast<frmHelp*>(window))
            return help;
    return nullptr;
}

void Write(const fs::path& file, const std::string& text) {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << text;
}

} // namespace

class Help_Test : public QObject {
    Q_OBJECT
private slots:
    void Every_Page_Is_Whole_And_Leads_Somewhere();
    void Contents_Search_And_Ways_Back();
    void Nothing_Outside_Its_Folder_Is_Shown();
    void Links_Of_A_Page_Play_Along();
    void It_Can_Be_Read_Beside_A_Dialog();
    void At_The_Start();
    void Videos_Data();
    void Videos();
};

void Help_Test::Every_Page_Is_Whole_And_Leads_Somewhere() {
    const std::vector<Help_Page> pages = Load_Help_Pages(HELP);
    std::size_t files = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(HELP))
        files += entry.path().extension() == ".html" ? 1U : 0U;
    QCOMPARE(pages.size(), files); // none is left out of the index
    Program p;
    for (const Help_Page& page : pages) {
        QFile file(QString::fromStdString((HELP / (page.name.toStdString() + ".html")).string()));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString html = QString::fromUtf8(file.readAll());
        QVERIFY2(html.contains(QStringLiteral("<h1>%1</h1>").arg(page.title)), qPrintable(page.name));
        static const QRegularExpression LINK(QStringLiteral("href=\"([^\"]*)\""));
        for (auto found = LINK.globalMatch(html); found.hasNext();) {
            const QString link = found.next().captured(1);
            const QString told = page.name + QStringLiteral(" -> ") + link;
            if (link.startsWith(QLatin1String("tonvex:")))
                QVERIFY2(p.window->Knows_Help_Link(link.mid(7)), qPrintable(told));
            else
                QVERIFY2(fs::exists(HELP / QUrl::fromPercentEncoding(link.toUtf8()).toStdString()),
                         qPrintable(told));
        }
    }
    QVERIFY(!p.window->Knows_Help_Link(QStringLiteral("format-disk")));
}

void Help_Test::Contents_Search_And_Ways_Back() {
    Memory_Settings_Store look;
    const Theme theme(*qApp, look);
    frmHelp help(theme, HELP);
    help.Show_Page({});
    auto* contents = help.findChild<QListWidget*>(QStringLiteral("contents"));
    auto* search = help.findChild<QLineEdit*>(QStringLiteral("search"));
    const int all = contents->count();
    QCOMPARE(help.View().Page(), QStringLiteral("intro"));
    QCOMPARE(contents->currentItem()->text(), QStringLiteral("First steps"));
    QVERIFY(help.windowTitle().startsWith(QStringLiteral("First steps")));

    QTest::keyClicks(search, "PICKING chord");
    QVERIFY(contents->count() >= 1 && contents->count() < all);
    QStringList titles;
    for (int row = 0; row < contents->count(); ++row)
        titles << contents->item(row)->text();
    QVERIFY(titles.contains(QStringLiteral("Chord keys")));
    contents->setCurrentRow(static_cast<int>(titles.indexOf(QStringLiteral("Chord keys"))));
    QCOMPARE(help.View().Page(), QStringLiteral("chords"));
    QVERIFY(!help.View().extraSelections().isEmpty()); // the words are marked
    search->setText(QStringLiteral("no such word anywhere"));
    QCOMPARE(contents->count(), 0);
    search->clear();
    QCOMPARE(contents->count(), all);

    help.findChild<QAbstractButton*>(QStringLiteral("back"))->click();
    QCOMPARE(help.View().Page(), QStringLiteral("intro"));
    QCOMPARE(contents->currentItem()->text(), QStringLiteral("First steps"));
    help.findChild<QAbstractButton*>(QStringLiteral("forward"))->click();
    QCOMPARE(help.View().Page(), QStringLiteral("chords"));
    help.findChild<QAbstractButton*>(QStringLiteral("home"))->click();
    QCOMPARE(help.View().Page(), QStringLiteral("intro"));
}

void Help_Test::Nothing_Outside_Its_Folder_Is_Shown() {
    Memory_Settings_Store look;
    const Theme theme(*qApp, look);
    const Temp_Folder folder;
    Write(folder.Path() / "secret.html", "<p>secret</p>");
    Write(folder.Path() / "help/a.html", "<h1>A</h1><img src=\"../secret.html\">");
    Help_View view(theme, folder.Path() / "help");
    QVERIFY(view.Show_Page(QStringLiteral("a")));
    for (const char* page : {"../secret", "/etc/passwd", "..", "", "missing"}) {
        QVERIFY2(!view.Show_Page(QLatin1String(page)), page);
        QVERIFY(!view.toPlainText().contains(QStringLiteral("secret\n")));
    }
    emit view.anchorClicked(
        QUrl::fromLocalFile(QString::fromStdString((folder.Path() / "secret.html").string())));
    QVERIFY(!view.toPlainText().startsWith(QStringLiteral("secret")));
    QVERIFY(view.Show_Page(QStringLiteral("a")));
    QVERIFY(view.toPlainText().startsWith(QLatin1Char('A')));
}

void Help_Test::Links_Of_A_Page_Play_Along() {
    Program p;
    p.window->Show_Help({});
    frmHelp* help = Help_Window();
    QVERIFY(help != nullptr);
    const auto click = [help](const char* link) {
        emit help->View().anchorClicked(QUrl(QStringLiteral("tonvex:") + QLatin1String(link)));
    };
    const auto notesOn = [&p] {
        return std::count_if(p.sound.posted.begin(), p.sound.posted.end(),
                             [](const Sound_Message& m) { return m.op == Sound_Op::NoteOn; });
    };
    click("sound/60-64-67-900-x");
    QCOMPARE(notesOn(), 3);
    click("add-channel");
    QCOMPARE(p.session->channels->Count_Channels(), 2);
    // A run has an event loop of its own, so what happens in it comes by a timer.
    QTimer user;
    connect(&user, &QTimer::timeout, this, [&] {
        if (!p.session->transport.Recording)
            return;
        user.stop();
        click("add-channel"); // not in the middle of a take
        click("sound/60");
        click("stop");
    });
    user.start(20);
    click("record");
    QTRY_VERIFY(!user.isActive() && p.session->transport.TransportStopped);
    QCOMPARE(p.session->channels->Count_Channels(), 2);
    QCOMPARE(notesOn(), 3);
    click("keys-sound");
    QVERIFY(p.window->Recorder().Practice().Keys());
    click("output-setup");
    QTRY_VERIFY(QApplication::activeModalWidget() != nullptr);
    click("add-channel"); // a dialog is open
    QCOMPARE(p.session->channels->Count_Channels(), 2);
    QApplication::activeModalWidget()->close();
}

void Help_Test::It_Can_Be_Read_Beside_A_Dialog() {
    Program p;
    p.Key(Qt::Key_P); // the patch window
    QWidget* dialog = QApplication::activeModalWidget();
    QVERIFY(dialog != nullptr);
    dialog->findChild<QPushButton*>(QStringLiteral("help"))->click();
    QCOMPARE(Help_Window()->View().Page(), QStringLiteral("patchselwindow"));
    QVERIFY(dialog->isVisible());
    // Input reaches it: the dialog does not block it.
    QTest::mouseClick(Help_Window()->findChild<QAbstractButton*>(QStringLiteral("home")), Qt::LeftButton);
    QCOMPARE(Help_Window()->View().Page(), QStringLiteral("intro"));
    QTest::keyClick(Help_Window(), Qt::Key_Escape);
    QVERIFY(!Help_Window()->isVisible() && dialog->isVisible());
    dialog->close();
    p.window->findChild<QPushButton*>(QStringLiteral("help"))->click(); // of the Keyboard tab
    QCOMPARE(Help_Window()->View().Page(), QStringLiteral("window-keyboard setup"));
}

void Help_Test::At_The_Start() {
    Program p;
    p.session->settings.Global_FirstRun = 0;
    p.window->Show_First_Help();
    QVERIFY(Help_Window() == nullptr);
    auto* entry = p.window->findChild<QAction*>(QStringLiteral("showHelpOnStartUp"));
    entry->trigger();
    QCOMPARE(p.session->settings.Global_ShowHelpOnStartUp, 1);
    p.window->Show_First_Help();
    QVERIFY(Help_Window()->isVisible());
    auto* check = Help_Window()->findChild<QCheckBox*>(QStringLiteral("onStart"));
    QVERIFY(check->isChecked());
    check->click();
    QCOMPARE(p.session->settings.Global_ShowHelpOnStartUp, 0);
    QVERIFY(!entry->isChecked());
}

void Help_Test::Videos_Data() {
    const Temp_Folder folder;
    const fs::path home = folder.Path();
    Write(home / "b.xml", "<video><title>Second</title><category>Basics</category><index>2</index>"
                          "<description>How to\nrecord</description></video>");
    Write(home / "b.webm", "film");
    Write(home / "a.XML", "<v Title='First' category='Basics' index='1'/>");
    Write(home / "c.xml", "<v><title>Alone</title></v>");
    Write(home / "cut off.xml", "<v><title>Cut off</title><index>");
    Write(home / "no title.xml", "<v><category>Basics</category></v>");
    Write(home / "no xml.xml", std::string("\0\1\2", 3));
    fs::create_directories(home / "folder.xml");
    const std::vector<Video> found = Find_Videos({home / "missing", home});
    QStringList titles;
    for (const Video& video : found)
        titles << video.category + QLatin1Char('/') + video.title;
    QCOMPARE(titles.join(QLatin1Char(' ')), QStringLiteral("/Alone Basics/First Basics/Second"));
    QCOMPARE(found[2].film, home / "b.webm");
    QVERIFY(found[1].film.empty());
    QCOMPARE(found[2].description, QStringLiteral("How to\nrecord"));
}

void Help_Test::Videos() {
    {
        Program none;
        QVERIFY(!none.window->findChild<QDockWidget*>(QStringLiteral("videos"))->isVisible());
    }
    const Temp_Folder folder;
    Write(folder.Path() / "config/videos/one.xml",
          "<v><title>One</title><description>About</description></v>");
    Write(folder.Path() / "config/videos/one.mp4", "film");
    Write(folder.Path() / "config/videos/two.xml", "<v><title>Two</title></v>");
    Program p(folder.Path());
    auto* dock = p.window->findChild<QDockWidget*>(QStringLiteral("videos"));
    QVERIFY(dock->isVisible());
    auto* pane = p.window->findChild<Video_Pane*>();
    QUrl opened;
    bool works = true;
    pane->opener = [&](const QUrl& film) { return opened = film, works; };
    QStringList failures;
    connect(pane, &Video_Pane::failed, this, [&failures](const QString& text) { failures << text; });
    auto* list = pane->findChild<QTreeWidget*>();
    auto* watch = pane->findChild<QPushButton*>(QStringLiteral("watch"));
    QVERIFY(!watch->isEnabled());
    list->setCurrentItem(list->topLevelItem(0)->child(0));
    QCOMPARE(pane->findChild<QLabel*>(QStringLiteral("description"))->text(), QStringLiteral("About"));
    watch->click();
    QVERIFY(opened.toLocalFile().endsWith(QStringLiteral("one.mp4")) && failures.isEmpty());
    works = false;
    watch->click();
    list->setCurrentItem(list->topLevelItem(0)->child(1));
    watch->click();
    QCOMPARE(failures.size(), 2);
    dock->toggleViewAction()->trigger();
    QCOMPARE(p.session->settings.Global_ShowVideoList, 0);
}

QTEST_MAIN(Help_Test)
#include "help_test.moc"
