#include "app/windows/frm_help.h"
#include "app/windows/frm_start_up.h"
#include "audio/windows/frm_sf2_error.h"
#include "input/windows/frm_piano_layout.h"
#include "input/windows/frm_qchord_config.h"
#include "platform/library_versions.h"
#include "platform/qt/core_words.h"
#include "project/windows/frm_export_audio.h"
#include "support/made_up_language.h"
#include "support/window_program.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QProcess>
#include <QStandardPaths>
#include <QTabBar>
#include <QTextBrowser>
#include <QTreeWidget>
#include <QXmlStreamReader>

#include <algorithm>
#include <filesystem>

using namespace tonvex;

namespace {

namespace fs = std::filesystem;

const fs::path SOURCES = fs::path(TONVEX_SOURCE_DATA).parent_path();

/// What a song, a font, a layout or a device calls something is data, as are the names of notes, files and
/// units.
class Data_Words {
public:
    explicit Data_Words(Session& session) {
        for (const auto* table : {&session.channels->Global_Patches})
            for (const PatchRow& row : *table)
                Add(row.Name);
        for (const PatchRow& row : session.channels->Global_DrumPatches)
            Add(row.Name);
        for (const auto& type : session.notes.ChordTypeTable) {
            Add(type.TypeName);
            Add(type.Suffix);
        }
        for (const auto& spellings : session.notes.NoteNames)
            for (const std::string& name : spellings)
                Add(name);
        for (const std::string& name : session.notes.DrumSoundNames)
            Add(name);
        for (const Help_Page& page : Load_Help_Pages(session.dataFolder / "help"))
            Add(page.title.toStdString());
        for (const std::string& name : session.layout->Layout_Names())
            Add(name);
        for (const Library_Row& row : Core_Libraries())
            for (const std::string& word : {row.name, row.version, row.licence})
                Add(word);
        for (const char* word : {"Tonvex", "MIDI",      "BPM",    "tvx",       "LGPL-3.0-only",
                                 "Qt",     "Channel 1", "Start",  "Untitled",  "sf2",
                                 "html",   "dB",        "Hz",     "ms",        "WAV",
                                 "MP3",    "FLAC",      "kbit/s", "TimGM6mb1", "Windows Media Audio"})
            Add(word);
        std::sort(words.begin(), words.end(),
                  [](const QString& a, const QString& b) { return a.size() > b.size(); });
    }
    /// What is left in plain letters once the data is taken out; empty when all is translated.
    QString Left_Of(QString text) const {
        static const QRegularExpression PLAIN(QStringLiteral("[A-Za-z]{2,}"));
        static const QRegularExpression PATH(
            QStringLiteral("/[^ ]*|[A-G](#|b)?m?[0-9a-zA-Z]*[°0-9]|Am|Bm|Dm|Em|Cs|Gm"));
        for (const QString& word : words)
            text.replace(word, QLatin1String(" "));
        text.replace(PATH, QStringLiteral(" "));
        return PLAIN.match(text).captured();
    }

private:
    void Add(const std::string& word) {
        const QString text = QString::fromStdString(word).simplified();
        if (text.size() >= 2)
            words << text;
    }
    QStringList words;
};

/// Everything in words on a window: where it stands, and the text.
std::vector<std::pair<QString, QString>> Texts_Of(QWidget& window) {
    std::vector<std::pair<QString, QString>> out;
    QList<QWidget*> all = window.findChildren<QWidget*>();
    all.prepend(&window);
    for (const QWidget* widget : all) {
        // The pages of the help are documents.
        if (qobject_cast<const QTextBrowser*>(widget) != nullptr)
            continue;
        const auto take = [&out, widget](const QString& text) {
            out.emplace_back(QLatin1String(widget->metaObject()->className()) + QLatin1Char(' ') +
                                 widget->objectName(),
                             text);
        };
        for (const char* name : {"windowTitle", "toolTip", "accessibleName", "accessibleDescription",
                                 "placeholderText", "title", "suffix", "prefix"})
            take(widget->property(name).toString());
        if (qobject_cast<const QLineEdit*>(widget) == nullptr) // what stands in a field is the user's
            take(widget->property("text").toString());
        for (const QAction* action : widget->actions()) {
            take(action->text());
            take(action->toolTip());
        }
        if (const auto* bar = qobject_cast<const QTabBar*>(widget))
            for (int tab = 0; tab < bar->count(); ++tab)
                take(bar->tabText(tab) + bar->tabToolTip(tab));
        const QAbstractItemModel* model = nullptr;
        if (const auto* combo = qobject_cast<const QComboBox*>(widget))
            model = combo->model();
        else if (const auto* list = qobject_cast<const QListWidget*>(widget))
            model = list->model();
        for (int row = 0; model != nullptr && row < model->rowCount(); ++row)
            take(model->index(row, 0).data().toString());
        if (const auto* tree = qobject_cast<const QTreeWidget*>(widget)) {
            for (int column = 0; column < tree->columnCount(); ++column) {
                take(tree->headerItem()->text(column));
                for (int row = 0; row < tree->topLevelItemCount(); ++row)
                    take(tree->topLevelItem(row)->text(column));
            }
        }
    }
    return out;
}

/// Controls that show less than their whole text.
QStringList Cut_Off(const QWidget& window) {
    QStringList cut;
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        QString text = widget->property("text").toString();
        bool whole = true;
        if (const auto* label = qobject_cast<const QLabel*>(widget))
            whole = label->wordWrap() ? label->heightForWidth(label->width()) <= label->height() + 1
                                      : label->sizeHint().width() <= label->width();
        else if (qobject_cast<const QAbstractButton*>(widget) != nullptr)
            whole = text.isEmpty() || widget->sizeHint().width() <= widget->width();
        else if (const auto* box = qobject_cast<const QComboBox*>(widget))
            whole = box->minimumSizeHint().width() <= box->width();
        else if (const auto* edit = qobject_cast<const QLineEdit*>(widget))
            whole = edit->fontMetrics().horizontalAdvance(text = edit->placeholderText()) <= edit->width();
        if (widget->isVisible() && !whole)
            cut << QStringLiteral("%1 %2: %3")
                       .arg(QLatin1String(widget->metaObject()->className()), widget->objectName(), text);
    }
    return cut;
}

/// A carriage return stands there as an element of its own.
QString Source_Text(QXmlStreamReader& reader) {
    QString text;
    while (!reader.atEnd() &&
           !(reader.readNext() == QXmlStreamReader::EndElement && reader.name() == QLatin1String("source"))) {
        if (reader.isCharacters())
            text += reader.text();
        else if (reader.isStartElement()) // <byte value="xd"/>
            text += QChar(reader.attributes().value(QLatin1String("value")).mid(1).toInt(nullptr, 16));
    }
    return text;
}

/// With TONVEX_SHOTS set to a folder, pictures too: what is painted must be looked at.
QStringList Look_At(QWidget& window, const Data_Words& data) {
    static int number = 0;
    QStringList faults;
    for (const auto& [where, text] : Texts_Of(window))
        if (!data.Left_Of(text).isEmpty())
            faults << QStringLiteral("%1: not translated: \"%2\" (%3)").arg(window.objectName(), text, where);
    for (const QString& cut : Cut_Off(window))
        faults << QStringLiteral("%1: cut off: %2").arg(window.objectName(), cut);
    if (const QString folder = qEnvironmentVariable("TONVEX_SHOTS"); !folder.isEmpty())
        window.grab().save(QStringLiteral("%1/%2-%3.png").arg(folder).arg(++number).arg(window.objectName()));
    return faults;
}

} // namespace

class Translation_Test : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { QCoreApplication::installTranslator(&language); }
    void cleanupTestCase() { QCoreApplication::removeTranslator(&language); }
    void Nothing_Is_Left_Out_And_Nothing_Cut_Off();
    void Texts_Of_The_Core();
    void Every_Box_Of_The_Core_Is_In_The_Table();
    void A_Catalogue_Can_Hold_All();

private:
    Made_Up_Language language;
};

void Translation_Test::Nothing_Is_Left_Out_And_Nothing_Cut_Off() {
    Program p;
    p.window->resize(1440, 900);
    const Data_Words data(*p.session);
    QStringList faults = Look_At(*p.window, data);
    for (QTabWidget* tabs : p.window->findChildren<QTabWidget*>()) {
        for (int tab = 0; tab < tabs->count(); ++tab) {
            tabs->setCurrentIndex(tab);
            QCoreApplication::processEvents();
            faults << Look_At(*p.window, data);
        }
    }
    // Every window that a menu opens.
    QSet<QString> seen;
    const auto lookAtAll = [&] {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window == p.window.get() || !window->isVisible())
                continue;
            seen.insert(window->objectName());
            faults << Look_At(*window, data);
            if (auto* menu = qobject_cast<QMenu*>(window))
                menu->close();
            else if (auto* dialog = qobject_cast<QDialog*>(window))
                dialog->reject();
            else
                window->close();
        }
    };
    QTimer modal; // for what a command waits for
    connect(&modal, &QTimer::timeout, this, lookAtAll);
    modal.start(50);
    p.dialogs.fileToSave = (p.folder.Path() / "out.wav").string();
    for (QAction* action : p.window->findChildren<QAction*>()) {
        const auto keys = action->shortcuts();
        if (action->menu() != nullptr || action->isCheckable() || !action->isEnabled() ||
            keys.contains(Qt::CTRL | Qt::Key_Q) || keys.contains(Qt::CTRL | Qt::Key_R) ||
            keys.contains(Qt::Key_Return) || keys.contains(Qt::CTRL | Qt::Key_Delete))
            continue;
        action->trigger();
        QCoreApplication::processEvents();
        lookAtAll();
    }
    modal.stop();
    for (const char* name : {"frmChannelWizard", "frmNewFile", "frmSaveAsTemplate", "frmTempo", "frmMarks",
                             "frmSetSpeed", "frmMetronomeSetup", "frmAbout", "frmHelp"})
        QVERIFY2(seen.contains(QLatin1String(name)), name);

    // Those that stand behind a key, a start or a failure.
    const auto look = [&](QWidget& window) {
        window.show();
        QCoreApplication::processEvents();
        faults << Look_At(window, data);
    };
    frmQChordConfig chord(*p.session, p.theme, p.window->Selected_Channel());
    look(chord);
    frmPianoLayout note(*p.session, p.theme, p.window->Selected_Channel());
    note.SetMode(Piano_Selection::Mode::Note);
    look(note);
    frmSF2Error noFont(*p.session, p.theme);
    look(noFont);
    auto* start = new frmStartUp(p.theme);
    look(*start);
    start->close();
    for (const Audio_Kind kind : {Audio_Kind::Wav, Audio_Kind::Wma}) {
        frmExportAudio options({kind, 44100, kind == Audio_Kind::Wav ? 16 : 128}, p.theme, nullptr);
        look(options);
    }
    faults.removeDuplicates();
    for (const QString& fault : faults)
        qInfo("%s", qPrintable(fault));
    QCOMPARE(faults.size(), 0);
}

void Translation_Test::Texts_Of_The_Core() {
    const auto strange = [](const char* text) { return Made_Up_Language::Say(QLatin1String(text)); };
    QCOMPARE(Core_Words("Error saving file"), strange("Error saving file"));
    QCOMPARE(
        Core_Words("Can't open file: /home/%1 Über.mid"),
        strange("Can't open file: %1").replace(QStringLiteral("%1"), QStringLiteral("/home/%1 Über.mid")));
    QString lower = strange("Add channel");
    lower[0] = lower[0].toLower();
    QCOMPARE(Core_Words("Undo add channel"), strange("Undo %1").replace(QStringLiteral("%1"), lower));
    QCOMPARE(Core_Words("Delete mark: Delete mark ?"),
             strange("Delete mark: %1 ?").replace(QStringLiteral("%1"), strange("Delete mark")));
    QCOMPARE(Core_Words("My own name"), QStringLiteral("My own name"));
    QCOMPARE(Core_Words(""), QString());
}

/// Literals that are handed to boxes, undo steps and progress windows, read out of the sources.
void Translation_Test::Every_Box_Of_The_Core_Is_In_The_Table() {
    static const QRegularExpression CALL(
        QStringLiteral("\\b(?:Show_Message|Ask_YesNo|Ask_YesNoCancel|Choose_File_To_Open|Begin_Work|Undo_[A-"
                       "Z]\\w+|Begin_Step|Practice_"
                       "Refuses|Keep|Fail|Failed|Say|Warn|Tell|Batch \\w+)\\(([^;{]*)[;{]"));
    static const QRegularExpression TR(QStringLiteral("\\btr\\(\\s*(\"(?:[^\"\\\\]|\\\\.)*\"\\s*)+\\)"));
    static const QRegularExpression LITERALS(QStringLiteral("(?:\"(?:[^\"\\\\]|\\\\.)*\"\\s*)+"));
    static const QRegularExpression SEAM(QStringLiteral("\"\\s*\""));
    QStringList table;
    for (const char* source : Core_Word_Sources())
        table << QString::fromUtf8(source);
    int found = 0;
    QStringList missing;
    for (const char* folder :
         {"app", "audio", "creator", "editors", "engine", "input", "project", "song", "widgets"}) {
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(SOURCES / folder)) {
            if (entry.path().extension() != ".cpp")
                continue;
            QFile file(QString::fromStdString(entry.path().string()));
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QString text = QString::fromUtf8(file.readAll());
            for (auto call = CALL.globalMatch(text); call.hasNext();) {
                const QString words = call.next().captured(1).remove(TR);
                for (auto literal = LITERALS.globalMatch(words); literal.hasNext();) {
                    QString one = literal.next().captured().trimmed();
                    one.replace(SEAM, QString());
                    one = one.mid(1, one.size() - 2).replace(QLatin1String("\\n"), QLatin1String("\n"));
                    one.replace(QLatin1String("\\r"), QLatin1String("\r"))
                        .replace(QLatin1String("(*"), QLatin1String("(%1"));
                    one = one.section(QStringLiteral("%1"), 0, 0).trimmed();
                    if (!one.contains(QRegularExpression(QStringLiteral("[A-Za-z]{3}"))))
                        continue;
                    ++found;
                    if (std::none_of(table.begin(), table.end(),
                                     [&one](const QString& row) { return row.contains(one); }))
                        missing << QStringLiteral("%1: \"%2\"").arg(QFileInfo(file).fileName(), one);
                }
            }
        }
    }
    QVERIFY(found > 80);
    QVERIFY2(missing.isEmpty(), qPrintable(missing.join(QLatin1Char('\n'))));
}

/// What was asked for while the windows stood open is what the translators' tool finds in the sources.
void Translation_Test::A_Catalogue_Can_Hold_All() {
    const QString tool =
        QStandardPaths::findExecutable(QStringLiteral("lupdate"), {QStringLiteral("/usr/lib/qt6/bin")});
    if (tool.isEmpty())
        QSKIP("lupdate is not installed");
    const Temp_Folder folder;
    const QString catalogue = QString::fromStdString((folder.Path() / "all.ts").string());
    QProcess run;
    run.setWorkingDirectory(QString::fromStdString(SOURCES.string()));
    run.start(tool, {"-silent", "-I", ".", "app", "audio", "editors", "engine", "input", "platform",
                     "project", "song", "widgets", "creator", "-ts", catalogue});
    QVERIFY(run.waitForFinished(60000) && run.exitCode() == 0);
    QFile file(catalogue);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QSet<Made_Up_Language::Asked> known;
    QXmlStreamReader reader(&file);
    QString context;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && reader.name() == QLatin1String("name"))
            context = reader.readElementText();
        else if (reader.isStartElement() && reader.name() == QLatin1String("source"))
            known.insert({context, Source_Text(reader)});
    }
    QVERIFY(known.size() > 500);
    QStringList missing;
    for (const auto& [from, source] : language.asked)
        // Qt's own texts have Qt's catalogue; ours are those of our namespace and of Core and the like.
        if ((from.startsWith(QLatin1String("tonvex")) || from.contains(QLatin1Char('_')) ||
             from == QLatin1String("Core")) &&
            !known.contains({from, source}))
            missing << from + QStringLiteral(": ") + source;
    missing.sort();
    QVERIFY2(missing.isEmpty(), qPrintable(missing.join(QLatin1Char('\n'))));
}

QTEST_MAIN(Translation_Test)
#include "translation_test.moc"
