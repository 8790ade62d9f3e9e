#include "platform/qt/qt_settings_store.h"
#include "platform/qt/qt_user_dialogs.h"

#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>
#include <tuple>

using namespace tonvex;

namespace {

class Settings_And_Dialogs_Test : public QObject {
    Q_OBJECT

    /// Does what the user would to every dialog that comes up.
    struct User : QTimer {
        explicit User(const std::function<void(QDialog&)>& act) {
            callOnTimeout(this, [act] {
                if (auto* top = static_cast<QDialog*>(QApplication::activeModalWidget()))
                    act(*top);
            });
            start(5);
        }
    };

private slots:
    void Values_Come_Back_From_The_File() {
        const QTemporaryDir folder;
        const QString file = folder.filePath(QStringLiteral("Tonvex.ini"));
        const struct {
            const char* key;
            const char* value;
        } rows[] = {{"Global_BASSBufferSize", "100"},
                    {"Projects_AudioPath", "/home/käte/a, b;c=\"d\"%20\\x"},
                    {"LRU0", ""},
                    {"LRU1", "@at [x] "},
                    {"LRU2", " 日本\nline"}};
        {
            Qt_Settings_Store store(file);
            for (const auto& row : rows)
                store.Set("Config", row.key, row.value);
            QVERIFY(store.Flush());
        }
        Qt_Settings_Store again(file);
        for (const auto& row : rows)
            QCOMPARE(again.Get("Config", row.key, "missing"), std::string(row.value));
        QCOMPARE(again.Get("Config", "Global_Notation", "0"), std::string("0"));
        QFile text(file);
        QVERIFY(text.open(QIODevice::ReadOnly));
        QVERIFY(text.readAll().contains("[Config]"));
    }
    void A_File_Written_By_Hand_Is_Read_And_Its_Nonsense_Written_Over() {
        const QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("hand.ini")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[Config]\nLRU0=/a, b/c.tvx\nnonsense\n[broken\n");
        file.close();
        Qt_Settings_Store store(file.fileName());
        QCOMPARE(store.Get("Config", "LRU0", ""), std::string("/a, b/c.tvx"));
        store.Set("Config", "LRU1", "b");
        QVERIFY(store.Flush() && !Qt_Settings_Store(file.fileName()).Get("Config", "LRU1", "").empty());
    }
    void A_Failed_Flush_Says_So_And_Loses_Nothing() {
        const QTemporaryDir folder;
        const QString inTheWay = folder.filePath(QStringLiteral("config"));
        QFile blocker(inTheWay);
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        const QString file = inTheWay + QStringLiteral("/Tonvex.ini"); // its folder is a file
        {
            Qt_Settings_Store store(file);
            store.Set("Config", "InstallationID", "77");
            QVERIFY(!store.Flush());
            QVERIFY(!store.Flush());
            QVERIFY(blocker.remove());
            QVERIFY(store.Flush());
        }
        const Qt_Settings_Store again(file);
        QCOMPARE(again.Get("Config", "InstallationID", "0"), std::string("77"));
    }
    void Boxes_Show_Plain_Text_And_Hand_Back_The_Answer() {
        Qt_User_Dialogs dialogs;
        const struct {
            QMessageBox::StandardButton button;
            bool yes;
        } rows[] = {{QMessageBox::Yes, true}, {QMessageBox::No, false}, {QMessageBox::NoButton, false}};
        for (const auto& row : rows) {
            QString text;
            const User user([&](QDialog& shown) {
                const auto& box = static_cast<QMessageBox&>(shown);
                text = box.text() + (box.textFormat() == Qt::PlainText ? "" : ", marked up");
                auto* button = box.button(row.button);
                button == nullptr ? (void)shown.close() : button->click();
            });
            QCOMPARE(dialogs.Ask_YesNo("<b>Overwrite ?</b>", "Tonvex"), row.yes);
            QCOMPARE(text, QStringLiteral("<b>Overwrite ?</b>"));
        }
        QDialog worked;
        worked.show();
        QVERIFY(QTest::qWaitForWindowActive(&worked));
        QMessageBox::Icon icon = QMessageBox::NoIcon;
        const QWidget* owner = nullptr;
        const User user([&](QDialog& box) {
            icon = static_cast<QMessageBox&>(box).icon();
            owner = box.parentWidget();
            box.accept();
        });
        dialogs.Show_Message(Box_Kind::Critical, "told", "Tonvex");
        QCOMPARE(icon, QMessageBox::Critical);
        QCOMPARE(owner, &worked); // so that it has the keyboard again
    }
    void A_Name_Gets_The_Ending_That_It_Lacks() {
        const QTemporaryDir folder;
        const std::string place = folder.path().toStdString() + "/";
        QVERIFY(QFile(folder.filePath(QStringLiteral("No. 5.tvx"))).open(QIODevice::WriteOnly));
        const Save_Request request{"Save", {"A (*.tvx)", "B (*.mid)", "All (*.*)"}, ".tvx", place};
        // The last is there, and not to be replaced.
        const std::tuple<const char*, int, std::string> rows[] = {
            {"song", 0, "song.tvx"}, {"v1.2", 0, "v1.2.tvx"}, {"x.TVX", 0, "x.TVX"},    {"x.mid", 0, "x.mid"},
            {"v1.2", 1, "v1.2.mid"}, {"v1.2", 2, "v1.2"},     {"No. 5", 0, "No. 6.tvx"}};
        for (auto [typed, filter, made] : rows) {
            const User user([&name = typed, row = filter](QDialog& top) {
                if (auto* dialog = qobject_cast<QFileDialog*>(&top)) {
                    dialog->selectNameFilter(dialog->nameFilters().at(row));
                    dialog->findChild<QLineEdit*>()->setText(QLatin1String(name));
                    top.accept();
                } else {
                    name = "No. 6";
                    top.reject();
                }
            });
            QCOMPARE(Qt_User_Dialogs().Choose_File_To_Save(request), place + made);
        }
    }
};

} // namespace

QTEST_MAIN(Settings_And_Dialogs_Test)
#include "qt_settings_and_dialogs_test.moc"
